// catalogue: finds mistakes in catalogue files.

#include "Catalogue.h"
#include "Commands.h"
#include "Console.h"
#include "Installation.h"

ExitCode Catalogue(Arguments arguments) {
    const auto lint = [](const std::wstring& path) {
        return LintCatalogueFile(path) == 0 ? ExitOk : ExitFindings;
    };
    if (!arguments.empty())
        return ForEachFile(arguments, lint);
    const std::wstring module = RegisteredModule(L"JobContents");
    if (module.empty())
        throw ToolError(L"the library is not registered: name a catalogue file");
    return lint(CatalogueBeside(module));
}
