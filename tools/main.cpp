// jobobjects: diagnoses installations, records and catalogues from the command line.

#include "Commands.h"
#include "Console.h"

#include <objbase.h>

#include <algorithm>
#include <exception>
#include <vector>

namespace {

struct Command {
    const wchar_t* name;
    std::size_t leastArguments;
    std::size_t mostArguments;
    ExitCode (*run)(Arguments);
    const wchar_t* help;
};

constexpr std::size_t AnyNumber = static_cast<std::size_t>(-1);

constexpr wchar_t ExitCodes[] =
    L"Exit codes: 0 no problem found, 1 problems found, 2 invalid command line,\r\n"
    L"3 the command failed.";

const Command Commands[] = {
    {L"check", 0, 0, Check,
     L"jobobjects check\r\n\r\n"
     L"Checks that the library is registered, that its classes can be created and that\r\n"
     L"its type library loads, finds mistakes in the catalogue beside it, and shows the\r\n"
     L"configuration of the log."},
    {L"show", 1, 1, Show,
     L"jobobjects show FILE\r\n\r\n"
     L"Reads a record's XML through the library and shows its properties as a table,\r\n"
     L"with nested records indented. Root elements: PrintJob, CopyJob, ScanJob,\r\n"
     L"FaxJob, JobContents, JobCopyLines, CopyLine, LogicalPrinter, WindowsPrintInfo,\r\n"
     L"PolicyResults."},
    {L"validate", 1, AnyNumber, Validate,
     L"jobobjects validate FILE...\r\n\r\n"
     L"The library reads a record's XML and writes it again. An error gives the reason\r\n"
     L"why it refuses the text. Warnings list the changes: elements that do not come\r\n"
     L"back, values that come back differently, and elements that get a default."},
    {L"catalogue", 0, AnyNumber, Catalogue,
     L"jobobjects catalogue [FILE...]\r\n\r\n"
     L"Finds mistakes in catalogues (JobAttributes.xml): duplicate words and codes,\r\n"
     L"missing defaults, bits that are used twice, codes out of order. Without FILE it\r\n"
     L"checks the catalogue beside the registered library."},
};

constexpr wchar_t GeneralHelp[] =
    L"jobobjects COMMAND [FILE]\r\n\r\n"
    L"  check             checks that the library is registered and works\r\n"
    L"  show FILE         shows a record's XML as a table\r\n"
    L"  validate FILE...  checks that the library reads records, and shows what it changes\r\n"
    L"  catalogue [FILE]  finds mistakes in catalogues\r\n\r\n"
    L"  COMMAND --help    help for a command\r\n"
    L"  --version         the tool's version\r\n";

ExitCode WrongUsage(const std::wstring& message) {
    Console::ErrorLine(L"jobobjects: " + message + L"\r\nTry \"jobobjects --help\".");
    return ExitUsage;
}

ExitCode RunCommand(const Command& command, Arguments arguments) {
    for (const std::wstring& argument : arguments) {
        if (argument == L"--help") {
            Console::Line(std::wstring(command.help) + L"\r\n\r\n" + ExitCodes);
            return ExitOk;
        }
        if (argument.starts_with(L"-"))
            return WrongUsage(L"unknown option " + argument);
    }
    if (arguments.size() < command.leastArguments)
        return WrongUsage(std::wstring(command.name) + L" needs a file");
    if (arguments.size() > command.mostArguments)
        return WrongUsage(L"too many arguments for " + std::wstring(command.name));
    return command.run(arguments);
}

ExitCode Run(const std::vector<std::wstring>& arguments) {
    if (arguments.empty())
        return WrongUsage(L"no command given");
    if (arguments[0] == L"--help") {
        Console::Line(std::wstring(GeneralHelp) + L"\r\n" + ExitCodes);
        return ExitOk;
    }
    if (arguments[0] == L"--version") {
        Console::Line(L"jobobjects " PROJECT_VERSION);
        return ExitOk;
    }
    for (const Command& command : Commands)
        if (arguments[0] == command.name)
            return RunCommand(command, Arguments(arguments).subspan(1));
    return WrongUsage(L"unknown command " + arguments[0]);
}

} // namespace

ExitCode ForEachFile(Arguments files, ExitCode (*command)(const std::wstring& path)) {
    ExitCode worst = ExitOk;
    for (const std::wstring& file : files) {
        try {
            worst = std::max(worst, command(file));
        } catch (const ToolError& error) {
            Console::ErrorLine(L"jobobjects: " + error.Message());
            worst = ExitCannotRun;
        }
    }
    return worst;
}

int wmain(int argc, wchar_t** argv) {
    const HRESULT initialized = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    int exitCode = ExitCannotRun;
    try {
        exitCode = Run(std::vector<std::wstring>(argv + 1, argv + argc));
    } catch (const ToolError& error) {
        Console::ErrorLine(L"jobobjects: " + error.Message());
    } catch (const std::bad_alloc&) {
        Console::ErrorLine(L"jobobjects: out of memory");
    } catch (const std::exception&) {
        Console::ErrorLine(L"jobobjects: unexpected failure");
    }
    if (SUCCEEDED(initialized))
        CoUninitialize();
    return exitCode;
}
