// catalogue: finds mistakes in catalogue files, or turns them into SQL.

#include "Catalogue.h"
#include "CatalogueSql.h"
#include "Commands.h"
#include "Console.h"
#include "Installation.h"

ExitCode Catalogue(const Options& options) {
    FindingsOutput output(options.format);
    const auto lint = [&](const std::wstring& path) {
        if (!options.dialect.empty())
            return ShowCatalogueSql(path, options.dialect);
        return LintCatalogueFile(path, &output).problems == 0 ? ExitOk : ExitFindings;
    };
    if (!options.files.empty())
        return ForEachFile(options, lint);
    const std::wstring module = RegisteredModule();
    if (module.empty())
        throw ToolError(L"the library is not registered: name a catalogue file");
    return lint(CatalogueBeside(module));
}
