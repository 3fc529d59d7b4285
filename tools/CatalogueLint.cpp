#include "CatalogueLint.h"

#include "CatalogueWords.h"
#include "Escaping.h"

#include <algorithm>
#include <limits>

namespace {

constexpr wchar_t PaperSection[] = L"PaperSizes";
constexpr wchar_t PairSection[] = L"PageAttributePairs";
constexpr wchar_t PageSection[] = L"PageAttributes";
constexpr wchar_t FinishingSection[] = L"FinishingAttributes";
constexpr wchar_t PdlSection[] = L"Pdls";

} // namespace

CatalogueLint::Children::Children(CatalogueLint& lint, Element parent) : m_lint(lint), m_parent(parent) {
    for (Element child = parent.FirstChild(); child; child = child.NextSibling())
        m_children.push_back(child);
    m_found.resize(m_children.size());
}

XmlTree::Element CatalogueLint::Children::Next(std::wstring_view name) {
    for (std::size_t i = m_next; i < m_children.size(); ++i) {
        if (m_children[i].Name() == name) {
            m_next = i + 1;
            m_found[i] = true;
            return m_children[i];
        }
    }
    return {};
}

XmlTree::Element CatalogueLint::Children::Need(std::wstring_view name) {
    if (const Element found = Next(name))
        return found;
    for (std::size_t i = 0; i < m_next; ++i) {
        if (m_children[i].Name() == name && !m_found[i]) {
            m_lint.m_findings.Error(m_children[i].Offset(),
                                    std::wstring(name) + L" is out of order and counts as missing");
            m_found[i] = true;
            return m_children[i]; // so that its content is checked too
        }
    }
    m_lint.m_findings.Error(m_parent.Offset(),
                            std::wstring(name) + L" is missing in " + std::wstring(m_parent.Name()));
    return {};
}

void CatalogueLint::Children::ReportRest() {
    for (std::size_t i = 0; i < m_children.size(); ++i)
        if (!m_found[i])
            m_lint.m_findings.Warning(m_children[i].Offset(), L"element " +
                                                                  std::wstring(m_children[i].Name()) +
                                                                  L" is not read here");
}

void CatalogueLint::Run() {
    Children sections(*this, m_tree.Root());
    if (const Element section = sections.Need(PaperSection))
        PaperSizes(section);
    if (const Element section = sections.Need(PairSection))
        Pairs(section);
    if (const Element section = sections.Need(PageSection))
        List(section, L"PageAttribute", PageSection);
    if (const Element section = sections.Need(FinishingSection))
        List(section, L"FinishingAttribute", FinishingSection);
    if (const Element section = sections.Need(PdlSection))
        Pdls(section);
    sections.ReportRest();
}

std::wstring CatalogueLint::Summary() const {
    return Count(m_paperSizes, L"paper size") + L" with " + Count(m_paperNames, L"name") + L", " +
           Count(m_pageWords, L"page attribute") + L", " + Count(m_finishingWords, L"finishing option") +
           L", " + Count(m_pdls, L"language");
}

void CatalogueLint::PaperSizes(Element section) {
    Children sizes(*this, section);
    std::int64_t expectedCode = 1;
    std::size_t defaults = 0;
    while (const Element size = sizes.Next(L"PaperSize")) {
        defaults += IsDefault(size) ? 1u : 0u;
        PaperSize(size, expectedCode);
    }
    sizes.ReportRest();
    CheckOneDefault(defaults, section, L"paper size");
}

void CatalogueLint::PaperSize(Element size, std::int64_t& expectedCode) {
    Children parts(*this, size);
    if (const Element dimensions = parts.Need(L"PaperDimensions"))
        Dimensions(dimensions);
    const Element names = parts.Need(L"PaperNames");
    const std::size_t namesBefore = m_paperNames;
    if (names)
        PaperNames(names);
    parts.ReportRest();
    if (m_paperNames == namesBefore) {
        m_findings.Error(size.Offset(),
                         L"a paper size without names is dropped, and the codes after it shift");
        return;
    }
    ++m_paperSizes;
    const auto code = Code(size);
    if (code) {
        const auto [first, isNew] = m_paperCodes.try_emplace(*code, size.Offset());
        if (!isNew)
            m_findings.Error(size.Offset(), L"code " + std::to_wstring(*code) +
                                                L" is already used by the paper size in line " +
                                                Line(first->second));
        else if (*code != expectedCode)
            m_findings.Error(size.Offset(), L"code " + std::to_wstring(*code) + L" is out of order: " +
                                                std::to_wstring(expectedCode) + L" is expected");
        expectedCode = *code;
    }
    ++expectedCode;
}

void CatalogueLint::Dimensions(Element dimensions) {
    Children sides(*this, dimensions);
    for (const wchar_t* name : {L"X", L"Y", L"XEpsilon", L"YEpsilon"}) {
        const Element side = sides.Need(name);
        const auto value = side ? Number(side, side.Text(), name) : std::nullopt;
        const bool isTolerance = std::wstring_view(name).size() > 1;
        if (value && (*value < 0 || (*value == 0 && !isTolerance)))
            m_findings.Error(side.Offset(), std::wstring(name) + L" is not a valid length: " + side.Text());
    }
    sides.ReportRest();
}

void CatalogueLint::PaperNames(Element names) {
    Children list(*this, names);
    std::size_t defaults = 0;
    while (const Element name = list.Next(L"PaperName")) {
        defaults += IsDefault(name) ? 1u : 0u;
        AddWord(name, PaperSection);
        ++m_paperNames;
    }
    list.ReportRest();
    CheckOneDefault(defaults, names, L"name of the paper size");
}

void CatalogueLint::Pairs(Element section) {
    Children pairs(*this, section);
    bool any = false;
    while (const Element pair = pairs.Next(L"PageAttributePair")) {
        any = true;
        Children sides(*this, pair);
        std::size_t defaults = 0;
        for (const wchar_t* name : {L"First", L"Second"}) {
            const Element side = sides.Need(name);
            if (!side)
                continue;
            defaults += IsDefault(side) ? 1u : 0u;
            AddWord(side, PairSection);
            CheckPageAttribute(side);
            BitCode(side, m_pageBits);
            ++m_pageWords;
        }
        sides.ReportRest();
        CheckOneDefault(defaults, pair, L"side of the pair");
    }
    pairs.ReportRest();
    if (!any)
        m_findings.Error(section.Offset(),
                         L"without a pair, copy lines get no attribute and are refused when they "
                         L"come back from a database");
}

void CatalogueLint::List(Element section, const wchar_t* item, const wchar_t* sectionName) {
    const bool isFinishing = sectionName == FinishingSection;
    Children list(*this, section);
    while (const Element word = list.Next(item)) {
        IsDefault(word);
        AddWord(word, sectionName);
        if (!isFinishing)
            CheckPageAttribute(word);
        BitCode(word, isFinishing ? m_finishingBits : m_pageBits);
        ++(isFinishing ? m_finishingWords : m_pageWords);
    }
    list.ReportRest();
}

void CatalogueLint::Pdls(Element section) {
    Children list(*this, section);
    std::size_t defaults = 0;
    while (const Element word = list.Next(L"Pdl")) {
        defaults += IsDefault(word) ? 1u : 0u;
        AddWord(word, PdlSection);
        // Languages may share a code, such as PCL6 and PCLXL.
        if (const auto code = Code(word); code && *code < 1)
            m_findings.Error(word.Offset(), L"code " + std::to_wstring(*code) + L" is below 1");
        ++m_pdls;
    }
    list.ReportRest();
    CheckOneDefault(defaults, section, L"language");
}

std::optional<std::int64_t> CatalogueLint::Number(Element element, const std::wstring& text,
                                                  const std::wstring& what) {
    const std::size_t digits = text.starts_with(L'-') ? 1 : 0;
    if (text.size() == digits || text.find_first_not_of(L"0123456789", digits) != std::wstring::npos) {
        m_findings.Error(element.Offset(), what + L" is not a number: " + Quoted(text));
        return std::nullopt;
    }
    constexpr std::size_t longest = 11;
    const std::int64_t value =
        text.size() <= longest ? std::stoll(text) : std::numeric_limits<std::int64_t>::max();
    if (value > std::numeric_limits<std::int32_t>::max() ||
        value < std::numeric_limits<std::int32_t>::min()) {
        m_findings.Error(element.Offset(), what + L" does not fit in 32 bits: " + text);
        return std::nullopt;
    }
    return value;
}

std::optional<std::int64_t> CatalogueLint::Code(Element element) {
    for (const XmlTree::Attribute& attribute : element.Attributes())
        if (attribute.name == L"DbId" && !attribute.isRead) {
            m_findings.Error(attribute.offset, L"DbId is in single quotes and is ignored");
            return std::nullopt;
        }
    const auto code = element.Find(L"DbId");
    if (code)
        return Number(element, code->value, L"DbId");
    m_findings.Error(element.Offset(), std::wstring(element.Name()) + L" has no DbId");
    return std::nullopt;
}

void CatalogueLint::BitCode(Element element, std::map<std::int64_t, std::size_t>& used) {
    const auto code = Code(element);
    if (!code)
        return;
    if (*code <= 0 || (*code & (*code - 1)) != 0) {
        m_findings.Error(element.Offset(), L"code " + std::to_wstring(*code) + L" is not one bit");
        return;
    }
    const auto [first, isNew] = used.try_emplace(*code, element.Offset());
    if (!isNew)
        m_findings.Error(element.Offset(), L"bit " + std::to_wstring(*code) + L" is already used in line " +
                                               Line(first->second));
}

bool CatalogueLint::IsDefault(Element element) {
    for (const XmlTree::Attribute& attribute : element.Attributes())
        if (attribute.name == L"Default" && !attribute.isRead)
            m_findings.Error(attribute.offset, L"Default is in single quotes and is ignored");
    const auto mark = element.Find(L"Default");
    if (!mark)
        return false;
    const std::wstring value = LowerCase(mark->value);
    if (value != L"true" && value != L"1" && value != L"false" && value != L"0")
        m_findings.Warning(mark->offset, L"Default " + Quoted(mark->value) + L" counts as false");
    return value == L"true" || value == L"1";
}

void CatalogueLint::AddWord(Element element, const wchar_t* section) {
    const std::wstring text = element.Text();
    if (text.empty()) {
        m_findings.Error(element.Offset(), L"the word is empty");
        return;
    }
    if (text.front() <= L' ' || text.back() <= L' ')
        m_findings.Error(element.Offset(), Quoted(text) + L" begins or ends with a blank and never matches");
    if (text.find(L',') != std::wstring::npos)
        m_findings.Error(element.Offset(), Quoted(text) + L" contains a comma and never matches");
    if (text.find(L"&#") != std::wstring::npos)
        m_findings.Warning(element.Offset(),
                           Quoted(text) + L": numeric character references are not decoded");
    const auto [first, isNew] = m_words.try_emplace(LowerCase(text), Word{text, section, element.Offset()});
    if (isNew)
        return;
    if (first->second.section == section)
        m_findings.Error(element.Offset(), Quoted(text) + L" duplicates line " + Line(first->second.offset) +
                                               L"; the later entry counts");
    else
        m_findings.Error(element.Offset(), Quoted(text) + L" is also in " + first->second.section +
                                               L", line " + Line(first->second.offset));
}

// The records search for these words themselves, case-sensitively.
void CatalogueLint::CheckPageAttribute(Element element) {
    const std::wstring text = element.Text();
    for (const std::wstring_view own : {L"Color", L"B&W", L"Duplex"}) {
        if (text == own)
            continue;
        if (text.find(own) != std::wstring::npos)
            m_findings.Error(element.Offset(), Quoted(text) + L" contains '" + std::wstring(own) +
                                                   L"' and is read as that word");
        else if (LowerCase(text) == LowerCase(std::wstring(own)))
            m_findings.Error(element.Offset(),
                             Quoted(text) + L" is recognized only as '" + std::wstring(own) + L"'");
    }
}

void CatalogueLint::CheckOneDefault(std::size_t count, Element parent, const std::wstring& what) {
    if (count == 0)
        m_findings.Error(parent.Offset(), L"no " + what + L" is marked as the default");
    else if (count > 1)
        m_findings.Error(parent.Offset(),
                         std::to_wstring(count) + L" entries are marked as the default " + what);
}

std::wstring CatalogueLint::Line(std::size_t offset) const {
    return std::to_wstring(m_tree.PlaceOf(offset).line);
}
