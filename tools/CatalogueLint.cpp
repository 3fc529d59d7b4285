#include "CatalogueLint.h"

#include <algorithm>
#include <limits>

namespace {

constexpr wchar_t PaperSection[] = L"PaperSizes";
constexpr wchar_t PairSection[] = L"PageAttributePairs";
constexpr wchar_t PageSection[] = L"PageAttributes";
constexpr wchar_t FinishingSection[] = L"FinishingAttributes";
constexpr wchar_t PdlSection[] = L"Pdls";

/// Converts A to Z only, as the library does when it compares words.
std::wstring LowerCase(std::wstring text) {
    for (wchar_t& c : text)
        if (c >= L'A' && c <= L'Z')
            c = static_cast<wchar_t>(c - L'A' + L'a');
    return text;
}

} // namespace

const XmlTree::Element* CatalogueLint::Children::Next(std::wstring_view name) {
    for (std::size_t i = m_next; i < m_parent.children.size(); ++i) {
        if (m_lint.m_tree[m_parent.children[i]].name == name) {
            m_next = i + 1;
            m_found[i] = true;
            return &m_lint.m_tree[m_parent.children[i]];
        }
    }
    return nullptr;
}

const XmlTree::Element* CatalogueLint::Children::Need(std::wstring_view name) {
    if (const Element* found = Next(name))
        return found;
    for (std::size_t i = 0; i < m_next; ++i) {
        const Element& child = m_lint.m_tree[m_parent.children[i]];
        if (child.name == name && !m_found[i]) {
            m_lint.m_findings.Error(child.offset, child.name + L" is out of order and counts as missing");
            m_found[i] = true;
            return &child; // so that its content is checked too
        }
    }
    m_lint.m_findings.Error(m_parent.offset, std::wstring(name) + L" is missing in " + m_parent.name);
    return nullptr;
}

void CatalogueLint::Children::ReportRest() {
    for (std::size_t i = 0; i < m_parent.children.size(); ++i)
        if (!m_found[i])
            m_lint.m_findings.Warning(m_lint.m_tree[m_parent.children[i]].offset,
                                      L"element " + m_lint.m_tree[m_parent.children[i]].name +
                                          L" is not read here");
}

void CatalogueLint::Run() {
    Children sections(*this, m_tree[XmlTree::Root]);
    if (const Element* section = sections.Need(PaperSection))
        PaperSizes(*section);
    if (const Element* section = sections.Need(PairSection))
        Pairs(*section);
    if (const Element* section = sections.Need(PageSection))
        List(*section, L"PageAttribute", PageSection);
    if (const Element* section = sections.Need(FinishingSection))
        List(*section, L"FinishingAttribute", FinishingSection);
    if (const Element* section = sections.Need(PdlSection))
        Pdls(*section);
    sections.ReportRest();
}

std::wstring CatalogueLint::Summary() const {
    return std::to_wstring(m_paperSizes) + L" paper sizes with " + std::to_wstring(m_paperNames) +
           L" names, " + std::to_wstring(m_pageWords) + L" page attributes, " +
           std::to_wstring(m_finishingWords) + L" finishing options, " + std::to_wstring(m_pdls) +
           L" languages";
}

void CatalogueLint::PaperSizes(const Element& section) {
    Children sizes(*this, section);
    std::int64_t expectedCode = 1;
    std::size_t defaults = 0;
    while (const Element* size = sizes.Next(L"PaperSize")) {
        defaults += IsDefault(*size) ? 1u : 0u;
        PaperSize(*size, expectedCode);
    }
    sizes.ReportRest();
    CheckOneDefault(defaults, section, L"paper size");
}

void CatalogueLint::PaperSize(const Element& size, std::int64_t& expectedCode) {
    Children parts(*this, size);
    if (const Element* dimensions = parts.Need(L"PaperDimensions"))
        Dimensions(*dimensions);
    const Element* names = parts.Need(L"PaperNames");
    const std::size_t namesBefore = m_paperNames;
    if (names)
        PaperNames(*names);
    parts.ReportRest();
    if (m_paperNames == namesBefore) {
        m_findings.Error(size.offset, L"a paper size without names is dropped, and the codes after it shift");
        return;
    }
    ++m_paperSizes;
    const auto code = Code(size);
    if (code) {
        const auto [first, isNew] = m_paperCodes.try_emplace(*code, size.offset);
        if (!isNew)
            m_findings.Error(size.offset, L"code " + std::to_wstring(*code) +
                                              L" is already used by the paper size in line " +
                                              Line(first->second));
        else if (*code != expectedCode)
            m_findings.Error(size.offset, L"code " + std::to_wstring(*code) + L" is out of order: " +
                                              std::to_wstring(expectedCode) + L" is expected");
        expectedCode = *code;
    }
    ++expectedCode;
}

void CatalogueLint::Dimensions(const Element& dimensions) {
    Children sides(*this, dimensions);
    for (const wchar_t* name : {L"X", L"Y", L"XEpsilon", L"YEpsilon"}) {
        const Element* side = sides.Need(name);
        const auto value = side ? Number(*side, side->text, name) : std::nullopt;
        const bool isTolerance = std::wstring_view(name).size() > 1;
        if (value && (*value < 0 || (*value == 0 && !isTolerance)))
            m_findings.Error(side->offset, std::wstring(name) + L" is not a valid length: " + side->text);
    }
    sides.ReportRest();
}

void CatalogueLint::PaperNames(const Element& names) {
    Children list(*this, names);
    std::size_t defaults = 0;
    while (const Element* name = list.Next(L"PaperName")) {
        defaults += IsDefault(*name) ? 1u : 0u;
        AddWord(*name, PaperSection);
        ++m_paperNames;
    }
    list.ReportRest();
    CheckOneDefault(defaults, names, L"name of the paper size");
}

void CatalogueLint::Pairs(const Element& section) {
    Children pairs(*this, section);
    bool any = false;
    while (const Element* pair = pairs.Next(L"PageAttributePair")) {
        any = true;
        Children sides(*this, *pair);
        std::size_t defaults = 0;
        for (const wchar_t* name : {L"First", L"Second"}) {
            const Element* side = sides.Need(name);
            if (!side)
                continue;
            defaults += IsDefault(*side) ? 1u : 0u;
            AddWord(*side, PairSection);
            CheckPageAttribute(*side);
            BitCode(*side, m_pageBits);
            ++m_pageWords;
        }
        sides.ReportRest();
        CheckOneDefault(defaults, *pair, L"side of the pair");
    }
    pairs.ReportRest();
    if (!any)
        m_findings.Error(section.offset,
                         L"without a pair, copy lines get no attribute and are refused when they "
                         L"come back from a database");
}

void CatalogueLint::List(const Element& section, const wchar_t* item, const wchar_t* sectionName) {
    const bool isFinishing = sectionName == FinishingSection;
    Children list(*this, section);
    while (const Element* word = list.Next(item)) {
        IsDefault(*word);
        AddWord(*word, sectionName);
        if (!isFinishing)
            CheckPageAttribute(*word);
        BitCode(*word, isFinishing ? m_finishingBits : m_pageBits);
        ++(isFinishing ? m_finishingWords : m_pageWords);
    }
    list.ReportRest();
}

void CatalogueLint::Pdls(const Element& section) {
    Children list(*this, section);
    std::size_t defaults = 0;
    while (const Element* word = list.Next(L"Pdl")) {
        defaults += IsDefault(*word) ? 1u : 0u;
        AddWord(*word, PdlSection);
        // Languages may share a code, such as PCL6 and PCLXL.
        if (const auto code = Code(*word); code && *code < 1)
            m_findings.Error(word->offset, L"code " + std::to_wstring(*code) + L" is below 1");
        ++m_pdls;
    }
    list.ReportRest();
    CheckOneDefault(defaults, section, L"language");
}

std::optional<std::int64_t> CatalogueLint::Number(const Element& element, const std::wstring& text,
                                                  const std::wstring& what) {
    const std::size_t digits = text.starts_with(L'-') ? 1 : 0;
    if (text.size() == digits || text.find_first_not_of(L"0123456789", digits) != std::wstring::npos) {
        m_findings.Error(element.offset, what + L" is not a number: '" + text + L"'");
        return std::nullopt;
    }
    constexpr std::size_t longest = 11;
    const std::int64_t value =
        text.size() <= longest ? std::stoll(text) : std::numeric_limits<std::int64_t>::max();
    if (value > std::numeric_limits<std::int32_t>::max() ||
        value < std::numeric_limits<std::int32_t>::min()) {
        m_findings.Error(element.offset, what + L" does not fit in 32 bits: " + text);
        return std::nullopt;
    }
    return value;
}

std::optional<std::int64_t> CatalogueLint::Code(const Element& element) {
    for (const XmlTree::Attribute& attribute : element.attributes)
        if (attribute.name == L"DbId" && !attribute.isRead) {
            m_findings.Error(attribute.offset, L"DbId is in single quotes and is ignored");
            return std::nullopt;
        }
    const XmlTree::Attribute* code = element.Find(L"DbId");
    if (code)
        return Number(element, code->value, L"DbId");
    m_findings.Error(element.offset, element.name + L" has no DbId");
    return std::nullopt;
}

void CatalogueLint::BitCode(const Element& element, std::map<std::int64_t, std::size_t>& used) {
    const auto code = Code(element);
    if (!code)
        return;
    if (*code <= 0 || (*code & (*code - 1)) != 0) {
        m_findings.Error(element.offset, L"code " + std::to_wstring(*code) + L" is not one bit");
        return;
    }
    const auto [first, isNew] = used.try_emplace(*code, element.offset);
    if (!isNew)
        m_findings.Error(element.offset, L"bit " + std::to_wstring(*code) + L" is already used in line " +
                                             Line(first->second));
}

bool CatalogueLint::IsDefault(const Element& element) {
    for (const XmlTree::Attribute& attribute : element.attributes)
        if (attribute.name == L"Default" && !attribute.isRead)
            m_findings.Error(attribute.offset, L"Default is in single quotes and is ignored");
    const XmlTree::Attribute* mark = element.Find(L"Default");
    if (!mark)
        return false;
    const std::wstring value = LowerCase(mark->value);
    if (value != L"true" && value != L"1" && value != L"false" && value != L"0")
        m_findings.Warning(mark->offset, L"Default '" + mark->value + L"' counts as false");
    return value == L"true" || value == L"1";
}

void CatalogueLint::AddWord(const Element& element, const wchar_t* section) {
    const std::wstring& text = element.text;
    if (text.empty()) {
        m_findings.Error(element.offset, L"the word is empty");
        return;
    }
    if (text.front() <= L' ' || text.back() <= L' ')
        m_findings.Error(element.offset, L"'" + text + L"' begins or ends with a blank and never matches");
    if (text.find(L',') != std::wstring::npos)
        m_findings.Error(element.offset, L"'" + text + L"' contains a comma and never matches");
    if (text.find(L"&#") != std::wstring::npos)
        m_findings.Warning(element.offset, L"'" + text + L"': numeric character references are not decoded");
    const auto [first, isNew] = m_words.try_emplace(LowerCase(text), Word{text, section, element.offset});
    if (isNew)
        return;
    if (first->second.section == section)
        m_findings.Error(element.offset, L"'" + text + L"' duplicates line " + Line(first->second.offset) +
                                             L"; the later entry counts");
    else
        m_findings.Error(element.offset, L"'" + text + L"' is also in " + first->second.section + L", line " +
                                             Line(first->second.offset));
}

// The records search for these words themselves, case-sensitively.
void CatalogueLint::CheckPageAttribute(const Element& element) {
    for (const std::wstring_view own : {L"Color", L"B&W", L"Duplex"}) {
        if (element.text == own)
            continue;
        if (element.text.find(own) != std::wstring::npos)
            m_findings.Error(element.offset, L"'" + element.text + L"' contains '" + std::wstring(own) +
                                                 L"' and is read as that word");
        else if (LowerCase(element.text) == LowerCase(std::wstring(own)))
            m_findings.Error(element.offset,
                             L"'" + element.text + L"' is recognized only as '" + std::wstring(own) + L"'");
    }
}

void CatalogueLint::CheckOneDefault(std::size_t count, const Element& parent, const std::wstring& what) {
    if (count == 0)
        m_findings.Error(parent.offset, L"no " + what + L" is marked as the default");
    else if (count > 1)
        m_findings.Error(parent.offset,
                         std::to_wstring(count) + L" entries are marked as the default " + what);
}

std::wstring CatalogueLint::Line(std::size_t offset) const {
    return std::to_wstring(m_tree.PlaceOf(offset).line);
}
