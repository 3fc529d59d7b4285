// jobobjects: looks at JobObjects, its records and its catalogue from the command line. A client of the
// library like any other.

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

constexpr wchar_t ExitCodes[] = L"Exit codes: 0 nothing is wrong, 1 something was found, 2 wrong usage,\r\n"
                                L"3 the command could not run.";

const Command Commands[] = {
    {L"check", 0, 0, Check,
     L"jobobjects check\r\n\r\n"
     L"Tells whether the library is registered, which file it is, whether its classes\r\n"
     L"can be created and its type library be loaded, what is wrong with the catalogue\r\n"
     L"beside it, and what the registry says about the log."},
    {L"show", 1, 1, Show,
     L"jobobjects show FILE\r\n\r\n"
     L"Reads a record's XML through the library and shows its properties as a table,\r\n"
     L"records inside it indented. The roots: PrintJob, CopyJob, ScanJob, FaxJob,\r\n"
     L"JobContents, JobCopyLines, CopyLine, LogicalPrinter, WindowsPrintInfo,\r\n"
     L"PolicyResults."},
    {L"validate", 1, AnyNumber, Validate,
     L"jobobjects validate FILE...\r\n\r\n"
     L"Lets the library read a record's XML and write it again. An error tells why it\r\n"
     L"refuses the text; warnings tell what changes on the way: elements that do not\r\n"
     L"come back, values that read as others, elements that get a default."},
    {L"catalogue", 0, AnyNumber, Catalogue,
     L"jobobjects catalogue [FILE...]\r\n\r\n"
     L"Looks for mistakes in a catalogue (JobAttributes.xml): doubled words and codes,\r\n"
     L"missing defaults, bits that are used twice, codes out of order. Without FILE it is\r\n"
     L"the catalogue beside the registered library."},
};

constexpr wchar_t GeneralHelp[] =
    L"jobobjects COMMAND [FILE]\r\n\r\n"
    L"  check             the state of the installed library\r\n"
    L"  show FILE         a record's XML as a table\r\n"
    L"  validate FILE...  whether the library reads a record's XML, and what it changes\r\n"
    L"  catalogue [FILE]  mistakes in a catalogue\r\n\r\n"
    L"  COMMAND --help    more about a command\r\n"
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
        return WrongUsage(L"which command?");
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
