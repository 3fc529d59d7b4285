#include "RecordLint.h"

#include "Escaping.h"
#include "RecordObject.h"

#include "common/QxVersion.h"
#include "common/xml/QxXmlScan.h"

#include <optional>

namespace {

constexpr std::wstring_view Blanks = L" \t\r\n";

struct WordElement {
    std::wstring_view parent, name;
    CatalogueWords::Use use;
    const wchar_t* noun;
};

constexpr WordElement WordElements[] = {
    {L"CopyLine", L"PaperSize", CatalogueWords::Use::PaperSize, L"paper size"},
    {L"CopyLine", L"Attributes", CatalogueWords::Use::PageAttributes, L"page attribute"},
    {L"CopyLine", L"PageAttributes", CatalogueWords::Use::PageAttributes, L"page attribute"},
    {L"JobContents", L"JobPdl", CatalogueWords::Use::Pdl, L"language"},
    {L"JobContents", L"JobFinishing", CatalogueWords::Use::Finishing, L"finishing option"},
};

/// "&name;" or "&#number;" at the beginning of a text; empty if it is an ampersand.
std::wstring_view ReferenceAt(std::wstring_view text) {
    constexpr std::wstring_view letters = L"#0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    const std::size_t end = text.find_first_not_of(letters, 1);
    return end != std::wstring_view::npos && end > 1 && text[end] == L';' ? text.substr(0, end + 1)
                                                                          : std::wstring_view();
}

bool IsDecoded(std::wstring_view reference) {
    return reference == L"&lt;" || reference == L"&amp;" || reference == L"&gt;" || reference == L"&apos;" ||
           reference == L"&quot;";
}

/// Skips white space, comments and processing instructions, which mean nothing beside the root element.
std::wstring_view SkipIgnorable(std::wstring_view text) {
    for (;;) {
        text.remove_prefix(std::min(text.find_first_not_of(Blanks), text.size()));
        const std::wstring_view end = text.starts_with(L"<!--") ? L"-->" : L"?>";
        const std::size_t close =
            text.starts_with(L"<!--") || text.starts_with(L"<?") ? text.find(end) : std::wstring_view::npos;
        if (close == std::wstring_view::npos)
            return text;
        text.remove_prefix(close + end.size());
    }
}

} // namespace

void RecordLint::Run(const CatalogueWords* words) {
    TextAround();
    for (Element element = m_tree.Root(); element; element = element.Next()) {
        if (words)
            CheckWords(*words, element);
        CheckReferences(element);
        CheckVersion(element);
    }
    ReportUnknownWords();
}

void RecordLint::TextAround() {
    const std::wstring_view text = m_tree.Document();
    const std::size_t before = text.find_first_not_of(Blanks);
    if (text[before] != L'<')
        m_findings.Warning(before, L"text before the root element is ignored");
    const std::wstring_view behind = SkipIgnorable(text.substr(m_tree.RootEnd()));
    if (!behind.empty())
        m_findings.Warning(text.size() - behind.size(), L"content behind the root element is ignored");
}

void RecordLint::CheckWords(const CatalogueWords& words, Element element) {
    const std::wstring_view name = element.Name();
    for (const WordElement& known : WordElements) {
        if (name != known.name || !element.Parent() || element.Parent().Name() != known.parent)
            continue;
        for (const std::wstring& word : words.Unknown(known.use, element.Text())) {
            const std::wstring what = std::wstring(known.noun) + L" " + Quoted(word);
            ++m_unknown.try_emplace(what, Unknown{element.Offset(), 0}).first->second.count;
        }
    }
}

/// One finding for each word, because one mistake is often in all lines.
void RecordLint::ReportUnknownWords() {
    std::multimap<std::size_t, std::wstring> messages; // by offset
    for (const auto& [what, unknown] : m_unknown)
        messages.emplace(unknown.offset,
                         L"the catalogue defines no " + what +
                             (unknown.count > 1 ? L" (" + Count(unknown.count, L"time") + L")" : L""));
    for (const auto& [offset, message] : messages)
        m_findings.Warning(offset, message);
}

void RecordLint::CheckReferences(Element element) {
    const std::wstring_view tag = element.StartTag();
    if (element.HasAttributes())
        ReportReference(tag, element.Offset());
    const std::wstring_view text = element.RawText();
    if (text.find(L"<!") == std::wstring_view::npos) // nothing is decoded in a CDATA section
        ReportReference(text, element.Offset() + tag.size() + 1);
}

void RecordLint::ReportReference(std::wstring_view text, std::size_t offset) {
    const auto length = static_cast<std::int32_t>(text.size());
    for (std::int32_t at = QxXmlScan::Find(text, L'&', 0); at < length;
         at = QxXmlScan::Find(text, L'&', at + 1)) {
        const auto position = static_cast<std::size_t>(at);
        const std::wstring_view reference = ReferenceAt(text.substr(position));
        if (reference.empty() || IsDecoded(reference))
            continue;
        m_findings.Warning(offset + position, Quoted(reference) + L" is not decoded and stays as it is");
        return; // one for each text
    }
}

void RecordLint::CheckVersion(Element element) {
    if (!element.HasAttributes())
        return;
    const std::wstring className = RecordObject::ClassOfRoot(element.Name());
    // Job contents have the same form in all versions.
    if (className.empty() || className == L"JobContents")
        return;
    const auto version = element.Find(L"Version");
    if (!version)
        return;
    const auto [newest, isNew] = m_newest.try_emplace(className);
    if (isNew) {
        XmlTree tree;
        const auto own =
            tree.Parse(RecordObject(className).Xml().View()) ? tree.Root().Find(L"Version") : std::nullopt;
        newest->second = own ? own->value : L"";
    }
    if (QxVersion(version->value) > QxVersion(newest->second))
        m_findings.Warning(version->offset, L"the library knows " + className + L" up to version " +
                                                newest->second + L"; elements of version " +
                                                Escaping::Plain(version->value) + L" are not read");
}
