#include "CommandLine.h"

#include "Console.h"
#include "Files.h"
#include "TextFile.h"

#include <algorithm>
#include <new>

namespace {

struct Command {
    const wchar_t* name;
    std::size_t leastFiles;
    std::size_t mostFiles;
    std::wstring_view options; ///< besides --json and --csv, each between blanks
    ExitCode (*run)(const Options&);
    const wchar_t* help;
};

constexpr std::size_t AnyNumber = static_cast<std::size_t>(-1);

const Command Commands[] = {
    {L"check", 0, 1, L"", Check,
     L"jobobjects check [--json | --csv] [PROGRAM]\r\n\r\n"
     L"Checks that the library can be used and works: registration or manifest,\r\n"
     L"objects, type library, catalogue and log. Each problem has a remedy. With\r\n"
     L"PROGRAM, checks the library that this program's manifest selects.\r\n"},
    {L"show", 1, AnyNumber, L"", Show,
     L"jobobjects show [--json | --csv] FILE...\r\n\r\n"
     L"Reads records through the library and shows their properties, with nested\r\n"
     L"records indented. Root elements: PrintJob, CopyJob, ScanJob, FaxJob,\r\n"
     L"JobContents, JobCopyLines, CopyLine, LogicalPrinter, WindowsPrintInfo,\r\n"
     L"PolicyResults.\r\n"},
    {L"validate", 1, AnyNumber, L" --defaults ", Validate,
     L"jobobjects validate [--defaults] [--json | --csv] FILE...\r\n\r\n"
     L"The library reads a record's XML and writes it again. An error gives the reason\r\n"
     L"why it refuses the text. Warnings list what does not come back as it is, and\r\n"
     L"words that the catalogue does not define.\r\n\r\n"
     L"  --defaults  lists the missing elements, which get their defaults\r\n"},
    {L"catalogue", 0, AnyNumber, L" --sql ", Catalogue,
     L"jobobjects catalogue [--json | --csv | --sql DATABASE] [FILE...]\r\n\r\n"
     L"Finds mistakes in catalogues (JobAttributes.xml): duplicate words and codes,\r\n"
     L"missing defaults, bits that are used twice, codes out of order. Without FILE it\r\n"
     L"checks the catalogue beside the registered library.\r\n\r\n"
     L"  --sql DATABASE  writes the codes and words as SQL instead, for sqlite,\r\n"
     L"                  postgresql or sqlserver\r\n"},
    {L"export", 1, AnyNumber, L" -o --table --continue --stop ", Export,
     L"jobobjects export [--csv | --json] [-o FOLDER [--continue] | --table TABLE] [--stop]\r\n"
     L"                  FILE|FOLDER...\r\n\r\n"
     L"Writes records as tables: jobs, copy_lines, policy_violations, logical_printers,\r\n"
     L"and rejected, the records that cannot be read. A file may hold many records,\r\n"
     L"one after the other. Of a folder, all *.xml files are read, in its folders too.\r\n\r\n"
     L"  -o FOLDER      writes one file per table; without it, standard output gets the\r\n"
     L"                 objects of all tables (--json) or one table (--csv, the default)\r\n"
     L"  --table TABLE  the table for standard output, jobs by default\r\n"
     L"  --continue     continues an interrupted export into FOLDER\r\n"
     L"  --stop         stops at the first record that cannot be read\r\n"},
    {L"report", 1, AnyNumber, L" -o ", Report,
     L"jobobjects report -o PAGE.html FILE|FOLDER...\r\n\r\n"
     L"Writes a page with the numbers of jobs: pages by user, printer, paper and month,\r\n"
     L"colour and two-sided shares, the outcome of policies, and the records that cannot\r\n"
     L"be read. The page needs no other file. An existing page is replaced.\r\n"},
};

constexpr wchar_t GeneralHelp[] =
    L"jobobjects COMMAND [OPTION...] [FILE...]\r\n\r\n"
    L"  check [PROGRAM]      checks that the library can be used and works\r\n"
    L"  show FILE...         shows records\r\n"
    L"  validate FILE...     checks that the library reads records, and shows what it\r\n"
    L"                       changes\r\n"
    L"  catalogue [FILE...]  finds mistakes in catalogues\r\n"
    L"  export FILE...       writes records as tables for a database\r\n"
    L"  report FILE...       writes a page with the numbers of jobs\r\n\r\n"
    L"  --json               one JSON object per line\r\n"
    L"  --csv                comma-separated values with a header\r\n"
    L"  COMMAND --help       help for a command; also -h and /?\r\n"
    L"  --version            the tool's version\r\n\r\n"
    L"FILE may contain the wildcards * and ?; - is standard input.\r\n";

constexpr wchar_t ExitCodes[] =
    L"\r\nExit codes: 0 no problem found, 1 problems found, 2 invalid command line,\r\n"
    L"3 the command failed, 4 the library refuses a record, 5 a file is not a record.\r\n";

bool IsHelp(const std::wstring& argument) {
    return argument == L"--help" || argument == L"-h" || argument == L"-?" || argument == L"/?";
}

void SetFormat(Options& options, Format format) {
    if (options.format != Format::Text && options.format != format)
        throw UsageError{L"--json and --csv exclude each other"};
    options.format = format;
}

/// Takes an option of one command, with its value if it has one. Returns false if the command does not have
/// the option.
bool TakeOption(const Command& command, const std::vector<std::wstring>& arguments, std::size_t& at,
                Options& options) {
    const struct {
        const wchar_t* name;
        bool Options::* flag;
        std::wstring Options::* value;
    } known[] = {
        {L"--defaults", &Options::listDefaults, nullptr}, {L"--stop", &Options::stopsAtProblem, nullptr},
        {L"--continue", &Options::continues, nullptr},    {L"-o", nullptr, &Options::output},
        {L"--table", nullptr, &Options::table},           {L"--sql", nullptr, &Options::dialect},
    };
    for (const auto& option : known) {
        if (arguments[at] != option.name ||
            command.options.find(L" " + arguments[at] + L" ") == std::wstring_view::npos)
            continue;
        if (option.flag)
            options.*option.flag = true;
        else if (++at < arguments.size())
            options.*option.value = arguments[at];
        else
            throw UsageError{std::wstring(option.name) + L" needs a value"};
        return true;
    }
    return false;
}

/// Options end at "--".
Options Parse(const Command& command, const std::vector<std::wstring>& arguments) {
    Options options;
    bool areFiles = false;
    for (std::size_t i = 1; i < arguments.size(); ++i) {
        const std::wstring& argument = arguments[i];
        if (areFiles || argument == StandardInput || !argument.starts_with(L"-"))
            options.files.push_back(argument);
        else if (argument == L"--")
            areFiles = true;
        else if (argument == L"--json" || argument == L"--csv")
            SetFormat(options, argument == L"--json" ? Format::Json : Format::Csv);
        else if (!TakeOption(command, arguments, i, options))
            throw UsageError{L"unknown option " + argument};
    }
    if (options.files.size() < command.leastFiles)
        throw UsageError{std::wstring(command.name) + L" needs a file"};
    if (options.files.size() > command.mostFiles)
        throw UsageError{L"too many arguments for " + std::wstring(command.name)};
    if (std::count(options.files.begin(), options.files.end(), StandardInput) > 1)
        throw UsageError{L"standard input can be read only once"};
    options.files = ExpandWildcards(options.files);
    return options;
}

ExitCode ShowHelp(const wchar_t* text) {
    Console::Text(std::wstring(text) + ExitCodes);
    return ExitOk;
}

ExitCode Run(const std::vector<std::wstring>& arguments) {
    if (arguments.empty())
        throw UsageError{L"no command given"};
    if (IsHelp(arguments[0]))
        return ShowHelp(GeneralHelp);
    if (arguments[0] == L"--version") {
        Console::Line(L"jobobjects " PROJECT_VERSION);
        return ExitOk;
    }
    for (const Command& command : Commands)
        if (arguments[0] == command.name)
            return std::any_of(arguments.begin() + 1, arguments.end(), IsHelp)
                       ? ShowHelp(command.help)
                       : command.run(Parse(command, arguments));
    throw UsageError{L"unknown command " + arguments[0]};
}

/// Higher is worse.
int Rank(ExitCode code) {
    constexpr ExitCode byRank[] = {ExitOk, ExitFindings, ExitRefused, ExitNoRecord, ExitCannotRun};
    return static_cast<int>(std::find(std::begin(byRank), std::end(byRank), code) - std::begin(byRank));
}

} // namespace

ExitCode RunCommandLine(const std::vector<std::wstring>& arguments) {
    try {
        return Run(arguments);
    } catch (const UsageError& error) {
        Console::ErrorLine(L"jobobjects: " + error.message);
        Console::ErrorLine(L"Try \"jobobjects --help\".");
        return ExitUsage;
    }
}

ExitCode Worse(ExitCode a, ExitCode b) {
    return Rank(a) > Rank(b) ? a : b;
}

ExitCode ForEachFile(const Options& options,
                     const std::function<ExitCode(const std::wstring& path)>& command) {
    ExitCode worst = ExitOk;
    for (const std::wstring& file : options.files) {
        ExitCode result = ExitCannotRun;
        try {
            result = command(file);
        } catch (const ToolError& error) {
            Console::ErrorLine(error);
        } catch (const std::bad_alloc&) {
            Console::ErrorLine(L"jobobjects: " + FileLabel(file) + L": out of memory");
        }
        worst = Worse(result, worst);
    }
    return worst;
}
