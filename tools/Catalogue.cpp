#include "Catalogue.h"

#include "CatalogueLint.h"
#include "Console.h"
#include "TextFile.h"

namespace {

/// Checks the size and the encoding.
void CheckFile(const TextFile& file, Findings& findings) {
    constexpr std::size_t mostBytes = 16 * 1024 * 1024;
    if (file.bytes > mostBytes)
        findings.FileError(L"the library refuses files of more than 16 MiB");
    if (const std::size_t at = file.text.find(L'\xFFFD'); at != std::wstring::npos)
        findings.Error(at, L"invalid UTF-8");
}

} // namespace

std::size_t LintCatalogueFile(const std::wstring& path) {
    const TextFile file = ReadTextFile(path);
    XmlTree tree;
    Findings findings(path, tree);
    const bool parsed = tree.Parse(file.text);
    CheckFile(file, findings);
    CatalogueLint lint(tree, findings);
    if (parsed)
        lint.Run();
    else
        findings.FileError(tree.Error());
    findings.Show();
    if (!parsed)
        return findings.Count();
    Console::Line(
        path + L": " + lint.Summary() + L"; " +
        (findings.Count() == 0 ? L"no problem found" : std::to_wstring(findings.Count()) + L" findings"));
    return findings.Count();
}
