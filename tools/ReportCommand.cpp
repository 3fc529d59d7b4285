// report: records as a page for people.

#include "CatalogueWords.h"
#include "Commands.h"
#include "Console.h"
#include "Escaping.h"
#include "Files.h"
#include "Installation.h"
#include "NewFile.h"
#include "ReportPage.h"
#include "Utf8.h"

namespace {

/// The catalogue's default names of paper sizes by code; empty if the catalogue cannot be read.
std::map<std::int64_t, std::string> PaperNames() {
    std::map<std::int64_t, std::string> names;
    XmlTree tree;
    try {
        if (tree.Parse(ReadTextFile(CatalogueBeside(LoadedLibrary())).text))
            for (const CataloguePaper& paper : PapersOf(tree))
                names[paper.code] = Utf8(paper.name);
    } catch (const ToolError&) {
        names.clear(); // the library logs the reason
    }
    return names;
}

} // namespace

ExitCode Report(const Options& options) {
    if (options.output.empty())
        throw UsageError{L"report needs -o and the page's name"};
    if (options.format != Format::Text)
        throw UsageError{L"report has no other format than HTML"};
    RecordInput input(ExpandFolders(options.files));
    const auto papers = PaperNames();
    ReportNumbers numbers(papers);
    RecordRows rows;
    std::optional<InputProblem> problem;
    ExitCode result = ExitOk;
    while (input.Next(rows, problem)) {
        if (problem) {
            result = Worse(result, problem->code);
            numbers.Add(*problem);
        }
        numbers.Add(rows);
    }
    Console::EndProgress();
    WriteNewFile(options.output, ReportPage(numbers, !papers.empty()));
    for (const InputProblem& each : numbers.problems)
        Console::ErrorLine(each.Text());
    if (numbers.problemCount > 0)
        Console::ErrorLine(Count(numbers.problemCount, L"problem") +
                           L": the report is partial and lists what could not be read.");
    Console::Line(options.output + L": " + Count(static_cast<std::size_t>(numbers.total.jobs), L"job") +
                  L", " + Count(static_cast<std::size_t>(numbers.total.pages), L"page"));
    return result;
}
