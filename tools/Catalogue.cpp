#include "Catalogue.h"

#include "CatalogueLint.h"
#include "Escaping.h"

namespace {

/// Checks the size and the encoding.
void CheckFile(const TextFile& file, Findings& findings) {
    constexpr std::size_t mostBytes = 16 * 1024 * 1024;
    if (file.bytes > mostBytes)
        findings.FileError(L"the library refuses files of more than 16 MiB");
    if (file.isMarkMissing)
        findings.FileError(std::wstring(L"this is ") + file.encoding +
                           L", without a byte-order mark: the library reads it as UTF-8");
    else
        findings.Encoding(file);
}

} // namespace

CatalogueResult LintCatalogueFile(const std::wstring& path, FindingsOutput* output) {
    const TextFile file = ReadTextFile(path);
    XmlTree tree;
    Findings findings(path, tree);
    const bool parsed = tree.Parse(file.text);
    CheckFile(file, findings);
    CatalogueLint lint(tree, findings);
    if (parsed)
        lint.Run();
    else
        findings.ParseError(file);
    CatalogueResult result{findings.Problems(), parsed ? lint.Summary() : L""};
    if (output) {
        findings.Show(*output);
        if (parsed)
            output->Result(findings.File(), result.summary + L"; " +
                                                (result.problems == 0 ? L"no problem found"
                                                                      : Count(result.problems, L"problem")));
    }
    return result;
}
