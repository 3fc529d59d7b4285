#include "RecordEdits.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr std::string_view Names[] = {"CopyLine",        "JobCopyLines", "JobContents", "PaperSize",
                                      "PaperDimensions", "Attributes",   "Sheets",      "PageAttributes",
                                      "Pages",           "PagesBW",      "PagesColor",  "PagesBlank",
                                      "JobCopies",       "JobOriginals", "JobPdl",      "JobFinishing"};
constexpr std::string_view Values[] = {"",
                                       "0",
                                       "1",
                                       "-1",
                                       "010",
                                       " 7 ",
                                       "2147483647",
                                       "2147483648",
                                       "A4",
                                       "A3",
                                       "ISO A4",
                                       "297,420",
                                       "Duplex",
                                       "B&amp;W",
                                       "Simplex,Color",
                                       "Mono,Duplex,,x",
                                       "Staple,Punch",
                                       "PostScript",
                                       "NT EMF 1.008",
                                       "<![CDATA[Color]]>"};
constexpr std::string_view Versions[] = {"1.0",  "2.0",      "3.0", "3.9", "4.0", "4.0.1",
                                         "04.0", "10.0.0.1", "4",   "",    "x"};

/// The mutated part of a value.
constexpr std::size_t MaxMutated = 64;

std::string InElement(std::string_view name, std::string_view content) {
    return std::string("<").append(name).append(">").append(content).append("</").append(name).append(">");
}

} // namespace

RecordEdits::RecordEdits(std::string_view text, unsigned seed, MutateBytes mutateBytes)
    : m_text(text), m_random(seed), m_mutateBytes(mutateBytes) {
}

bool RecordEdits::Edit() {
    m_elements = FindElements(m_text);
    if (m_elements.empty())
        return false;
    if (m_elements.size() == 1) {
        InsertNew();
        return true;
    }
    const Element child = m_elements[1 + Random(m_elements.size() - 1)];
    const std::string part(Part(child.open, child.end));
    switch (Random(10)) {
    case 0:
        Insert(part);
        break;
    case 1:
        Replace(child, {});
        Insert(part);
        break;
    case 2:
        Replace(child, {});
        break;
    case 3:
        Replace(child, std::string(Part(child.contentBegin, child.contentEnd)));
        break;
    case 4:
        Replace(child, InElement(RandomName(), part));
        break;
    case 5:
        InsertNew();
        break;
    case 6:
        Rename(child);
        break;
    case 7:
        SetVersion(Random(2) == 0 ? m_elements.front() : child);
        break;
    case 8:
        SetContent(child, std::string(AnyOf(Values)));
        break;
    default:
        SetContent(child, MutatedContent(child));
    }
    return true;
}

bool RecordEdits::Graft(std::string_view other) {
    m_elements = FindElements(m_text);
    const std::vector<Element> others = FindElements(other);
    if (m_elements.empty() || others.empty())
        return false;
    const Element& element = others[Random(others.size())];
    Insert(other.substr(element.open, element.end - element.open));
    return true;
}

std::vector<RecordEdits::Element> RecordEdits::FindElements(std::string_view text) {
    std::vector<Element> elements;
    std::vector<std::size_t> open;
    for (std::size_t at = text.find('<'); at != std::string_view::npos; at = text.find('<', at)) {
        const std::size_t close = text.find('>', at);
        if (close == std::string_view::npos)
            break;
        const char first = text[at + 1];
        const std::size_t end = close + 1;
        if (first == '/') {
            if (open.empty())
                break;
            elements[open.back()].contentEnd = at;
            elements[open.back()].end = end;
            open.pop_back();
        } else if (first != '!' && first != '?' && first != '>') {
            const bool isEmpty = text[close - 1] == '/';
            if (!isEmpty)
                open.push_back(elements.size());
            elements.push_back({at, end, end, isEmpty ? end : 0});
        }
        at = end;
    }
    std::erase_if(elements, [](const Element& element) { return element.end == 0; });
    return elements;
}

std::size_t RecordEdits::Random(std::size_t count) {
    return m_random() % count;
}

template<std::size_t Count>
std::string_view RecordEdits::AnyOf(const std::string_view (&texts)[Count]) {
    return texts[Random(Count)];
}

std::string_view RecordEdits::RandomName() {
    if (Random(2) == 0)
        return AnyOf(Names);
    const Element& element = m_elements[Random(m_elements.size())];
    return Part(element.open + 1, NameEnd(element));
}

std::size_t RecordEdits::NameEnd(const Element& element) const {
    return m_text.find_first_of(" \t\r\n=/>", element.open + 1);
}

std::string_view RecordEdits::Part(std::size_t begin, std::size_t end) const {
    return std::string_view(m_text).substr(begin, end - begin);
}

void RecordEdits::Replace(const Element& element, std::string_view text) {
    m_text.replace(element.open, element.end - element.open, text);
    m_elements = FindElements(m_text);
}

/// Inserts a part before an element or at the end of its content.
void RecordEdits::Insert(std::string_view part) {
    const std::size_t index = Random(m_elements.size());
    const bool inside = index == 0 || Random(4) == 0;
    m_text.insert(inside ? m_elements[index].contentEnd : m_elements[index].open, part);
}

void RecordEdits::InsertNew() {
    Insert(InElement(RandomName(), AnyOf(Values)));
}

void RecordEdits::Rename(const Element& element) {
    const std::string name(RandomName());
    if (element.contentEnd != element.end)
        m_text.replace(element.contentEnd, element.end - element.contentEnd, "</" + name + '>');
    m_text.replace(element.open + 1, NameEnd(element) - element.open - 1, name);
}

void RecordEdits::SetVersion(const Element& element) {
    constexpr std::string_view start = " Version=\"";
    const std::string_view version = AnyOf(Versions);
    const std::size_t found = Part(element.open, element.contentBegin).find(start);
    if (found == std::string_view::npos) {
        m_text.insert(NameEnd(element), std::string(start).append(version) + '"');
        return;
    }
    const std::size_t value = element.open + found + start.size();
    const std::size_t end = m_text.find('"', value);
    if (end < element.contentBegin)
        m_text.replace(value, end - value, version);
}

void RecordEdits::SetContent(const Element& element, std::string_view content) {
    if (element.contentEnd != element.end)
        m_text.replace(element.contentBegin, element.contentEnd - element.contentBegin, content);
}

/// The first characters changed by bytes. Elements inside become text.
std::string RecordEdits::MutatedContent(const Element& element) {
    std::string content(Part(element.contentBegin, element.contentEnd));
    const std::size_t size = std::min(content.size(), MaxMutated);
    content.resize(MaxMutated);
    content.resize(m_mutateBytes(reinterpret_cast<unsigned char*>(content.data()), size, content.size()));
    std::replace_if(content.begin(), content.end(), [](char c) { return c == '<' || c == '>'; }, '_');
    return content;
}
