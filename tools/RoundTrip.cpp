#include "RoundTrip.h"

#include "Console.h"
#include "Escaping.h"

#include <algorithm>
#include <array>
#include <deque>
#include <map>
#include <unordered_map>
#include <utility>
#include <vector>

namespace {

using Element = XmlTree::Element;

/// What merging copy lines adds up.
constexpr std::array<std::wstring_view, 4> Counts{L"Sheets", L"PagesBW", L"PagesColor", L"PagesBlank"};
/// The elements of the older copy line, and those that replace them.
constexpr std::array<std::wstring_view, 2> OlderElements{L"Pages", L"PageAttributes"};
constexpr std::array<std::wstring_view, 4> CurrentElements{L"PagesBW", L"PagesColor", L"PagesBlank",
                                                           L"Attributes"};

template<std::size_t Size>
bool Contains(const std::array<std::wstring_view, Size>& names, std::wstring_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool IsOlderLine(Element given) {
    return given.Name() == L"CopyLine" && given.Child(OlderElements[0]);
}

std::wstring TextOf(Element parent, std::wstring_view child) {
    const Element element = parent.Child(child);
    return element ? element.Text() : L"";
}

/// "Sheets 3, PagesBW 4"
template<std::size_t Size>
std::wstring Listed(Element parent, const std::array<std::wstring_view, Size>& names) {
    std::wstring text;
    for (const std::wstring_view name : names) {
        const std::wstring value = TextOf(parent, name);
        text += (text.empty() ? L"" : L", ") + std::wstring(name) + L" " +
                (name == L"Attributes" ? Quoted(value) : value);
    }
    return text;
}

} // namespace

void RoundTrip::Compare() {
    m_pending = {{m_given.Root(), m_written.Root()}};
    while (!m_pending.empty()) {
        const Pair pair = m_pending.front();
        m_pending.pop_front();
        Console::Progress(L"Comparing", pair.given.Offset(), m_given.Document().size());
        CompareAttributes(pair);
        CompareText(pair);
        if (pair.given.Name() == L"JobCopyLines")
            CompareCopyLines(pair);
        else
            CompareChildren(pair);
    }
    Console::EndProgress();
}

/// Most elements come back character by character.
void RoundTrip::Match(const Pair& parent, Element given, Element written) {
    if (parent.isMerged && Contains(Counts, given.Name()))
        return;
    if (given.Markup() != written.Markup())
        m_pending.push_back({given, written});
}

void RoundTrip::CompareAttributes(const Pair& pair) {
    if (!pair.given.HasAttributes())
        return;
    for (const XmlTree::Attribute& attribute : pair.given.Attributes()) {
        const auto back = pair.written.Find(attribute.name);
        const std::wstring label = L"attribute " + attribute.name;
        if (!attribute.isRead)
            m_findings.Warning(attribute.offset, label + L" is in single quotes and is ignored");
        else if (!back)
            m_findings.Warning(attribute.offset, label + L" does not come back");
        else if (back->value != attribute.value)
            m_findings.Warning(attribute.offset, label + L" " + Quoted(attribute.value) + L" comes back as " +
                                                     Quoted(back->value));
    }
}

void RoundTrip::CompareText(const Pair& pair) {
    if (pair.given.FirstChild() || pair.written.FirstChild())
        return;
    const std::wstring given = pair.given.Text(), written = pair.written.Text();
    if (given != written)
        m_findings.Warning(pair.given.Offset(), std::wstring(pair.given.Name()) + L" " + Quoted(given) +
                                                    L" comes back as " + Quoted(written));
}

/// Matches elements of the same name in their order.
void RoundTrip::CompareChildren(const Pair& pair) {
    Element given = pair.given.FirstChild(), written = pair.written.FirstChild();
    for (; given && written && given.Name() == written.Name(); given = given.NextSibling()) {
        Match(pair, given, written);
        written = written.NextSibling();
    }
    if (given || written)
        CompareOtherChildren(pair, given, written);
}

void RoundTrip::CompareOtherChildren(const Pair& pair, Element given, Element written) {
    const bool isOlder = IsOlderLine(pair.given);
    if (isOlder)
        ReportOlderLine(pair);
    std::map<std::wstring_view, std::deque<Element>> back;
    for (Element child = written; child; child = child.NextSibling())
        back[child.Name()].push_back(child);
    Element last;
    bool isInOrder = true;
    for (; given; given = given.NextSibling()) {
        const auto candidates = back.find(given.Name());
        if (isOlder && Contains(OlderElements, given.Name()))
            continue;
        if (candidates == back.end() || candidates->second.empty()) {
            m_findings.Warning(given.Offset(),
                               L"element " + std::wstring(given.Name()) + L" does not come back");
            continue;
        }
        const Element match = candidates->second.front();
        candidates->second.pop_front();
        Match(pair, given, match);
        if (last && match.Offset() < last.Offset() && isInOrder) { // one finding for each parent
            isInOrder = false;
            m_findings.Warning(given.Offset(), std::wstring(given.Name()) + L" is written before " +
                                                   std::wstring(last.Name()));
        }
        if (!last || match.Offset() > last.Offset())
            last = match;
    }
    for (Element child = written; child; child = child.NextSibling()) {
        const auto& left = back[child.Name()];
        if (std::find(left.begin(), left.end(), child) != left.end() &&
            !(isOlder && Contains(CurrentElements, child.Name())))
            ReportDefault(pair.given, child);
    }
}

void RoundTrip::ReportOlderLine(const Pair& pair) {
    m_findings.Warning(pair.given.Child(OlderElements[0]).Offset(),
                       L"this older form of a copy line comes back as " +
                           Listed(pair.written, CurrentElements));
}

void RoundTrip::ReportDefault(Element given, Element written) {
    ++m_defaults;
    if (m_listDefaults)
        m_findings.Note(given.Offset(), L"element " + std::wstring(written.Name()) + L" is missing in " +
                                            std::wstring(given.Name()) + L"; it is written as " +
                                            Quoted(written.Text()));
}

/// The library merges copy lines by their paper size and sorts them by it.
void RoundTrip::CompareCopyLines(const Pair& pair) {
    struct Group {
        Element written;
        std::size_t count = 0;
        bool isReported = false;
    };
    std::unordered_map<std::wstring, Group> groups;
    for (Element line = pair.written.FirstChild(); line; line = line.NextSibling())
        groups[TextOf(line, L"PaperSize")].written = line;
    std::vector<std::pair<Element, Group*>> lines;
    std::size_t last = 0;
    bool isSorted = true;
    for (Element line = pair.given.FirstChild(); line; line = line.NextSibling()) {
        const auto group = groups.find(TextOf(line, L"PaperSize"));
        if (line.Name() != L"CopyLine" || group == groups.end()) {
            m_findings.Warning(line.Offset(),
                               L"element " + std::wstring(line.Name()) + L" does not come back");
            continue;
        }
        lines.emplace_back(line, &group->second);
        if (group->second.count++ == 0) {
            isSorted = isSorted && group->second.written.Offset() >= last;
            last = group->second.written.Offset();
        }
    }
    if (!isSorted)
        m_findings.Warning(pair.given.Offset(),
                           L"the copy lines come back in the order of their paper sizes");
    for (const auto& [line, group] : lines) {
        m_pending.push_back({line, group->written, group->count > 1});
        if (group->count > 1 && !std::exchange(group->isReported, true))
            ReportMerged(line, group->written, group->count);
    }
}

void RoundTrip::ReportMerged(Element first, Element written, std::size_t count) {
    m_findings.Warning(first.Offset(), Count(count, L"copy line") + L" of paper " +
                                           Quoted(TextOf(written, L"PaperSize")) + L" come back as one: " +
                                           Listed(written, Counts));
}
