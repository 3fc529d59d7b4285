#include "ReportPage.h"

#include "Html.h"
#include "PageChart.h"
#include "ReportStyle.h"
#include "Utf8.h"

#include <algorithm>
#include <initializer_list>
#include <vector>

namespace {

using Html::Number;
using Html::Percent;

constexpr std::size_t MostRows = 15;
constexpr std::array OutcomeNames{"No policy", "Kept", "Informed", "Violated", "Cancelled"};

std::string Nonempty(const std::string& name) {
    return name.empty() ? "<span class='soft'>(none)</span>" : Html::Text(name);
}

std::string Row(const std::string& head, std::initializer_list<std::string> cells, bool isRest = false) {
    std::string row = isRest ? "<tr class='rest'>" : "<tr>";
    row += "<th scope='row'>" + head + "</th>";
    for (const std::string& cell : cells)
        row += "<td>" + cell + "</td>";
    return row + "</tr>\n";
}

std::string Table(const char* id, std::initializer_list<const char*> heads, const std::string& rows) {
    std::string table = std::string("<table id='") + id + "'><thead><tr>";
    for (const char* const head : heads)
        table += std::string("<th scope='col'>") + head + "</th>";
    return table + "</tr></thead><tbody>\n" + rows + "</tbody></table>\n";
}

std::string CountsRow(const std::string& head, const PageCounts& of, bool isRest = false) {
    return Row(head, {Number(of.jobs), Number(of.pages), Number(of.color), Number(of.sheets)}, isRest);
}

std::string CountsTable(const char* id, const char* head, const std::string& rows) {
    return "<div class='counts'>" + Table(id, {head, "Jobs", "Pages", "Colour", "Sheets"}, rows) + "</div>";
}

std::string Section(const char* title, const std::string& content, const char* id = nullptr) {
    return std::string("<section") + (id ? std::string(" id='") + id + "'" : "") + "><h2>" + title +
           "</h2>\n" + content + "</section>\n";
}

std::string Width(std::int64_t part, std::int64_t all) {
    return "<i style='width:" +
           std::to_string(all > 0 ? 100.0 * static_cast<double>(part) / static_cast<double>(all) : 0.0) +
           "%'></i>";
}

/// The names with the most pages, and the sum of the others.
std::string Ranking(const char* id, const char* head, const char* others,
                    const ReportNumbers::ByName& counts) {
    std::vector<std::pair<std::string, PageCounts>> ranked(counts.begin(), counts.end());
    std::stable_sort(ranked.begin(), ranked.end(),
                     [](const auto& a, const auto& b) { return a.second.pages > b.second.pages; });
    const std::int64_t most = ranked.empty() ? 0 : ranked.front().second.pages;
    const std::size_t shown = ranked.size() <= MostRows + 1 ? ranked.size() : MostRows;
    std::string rows;
    for (std::size_t at = 0; at < shown; ++at) {
        const auto& [name, of] = ranked[at];
        rows += CountsRow(Nonempty(name) + "<span class='bar'>" + Width(of.color, most) +
                              Width(of.pages - of.color, most) + "</span>",
                          of);
    }
    PageCounts rest;
    for (std::size_t at = shown; at < ranked.size(); ++at)
        rest += ranked[at].second;
    if (shown < ranked.size())
        rows += CountsRow(Number(static_cast<std::int64_t>(ranked.size() - shown)) + " other " + others, rest,
                          true);
    return CountsTable(id, head, rows);
}

std::string Fact(const char* name, const std::string& value, const std::string& more = {}) {
    return std::string("<div><dt>") + name + "</dt><dd>" + value + "</dd>" +
           (more.empty() ? "" : "<dd>" + more + "</dd>") + "</div>\n";
}

std::string Facts(const ReportNumbers& numbers) {
    const PageCounts& total = numbers.total;
    const PageCounts& violated = numbers.outcomes.at(static_cast<std::size_t>(Outcome::Violated));
    const PageCounts& informed = numbers.outcomes.at(static_cast<std::size_t>(Outcome::Informed));
    const PageCounts& cancelled = numbers.outcomes.at(static_cast<std::size_t>(Outcome::Cancelled));
    return "<dl class='facts'>\n" + Fact("Jobs", Number(total.jobs)) + Fact("Pages", Number(total.pages)) +
           Fact("Sheets", Number(total.sheets)) +
           Fact("Colour pages", Percent(total.color, total.pages), Number(total.color) + " pages") +
           Fact("Two-sided pages", Percent(total.duplex, total.pages), Number(total.duplex) + " pages") +
           Fact("Against policy", Percent(violated.jobs + informed.jobs + cancelled.jobs, total.jobs),
                Number(violated.jobs + informed.jobs + cancelled.jobs) + " jobs") +
           "</dl>\n";
}

std::string Kinds(const ReportNumbers& numbers) {
    std::string rows;
    for (const auto& [kind, name] : {std::pair("PrintJob", "Print"), std::pair("CopyJob", "Copy"),
                                     std::pair("ScanJob", "Scan"), std::pair("FaxJob", "Fax")})
        if (const auto of = numbers.kinds.find(kind); of != numbers.kinds.end())
            rows += CountsRow(name, of->second);
    return CountsTable("kinds", "Kind", rows);
}

std::string Split(const char* name, const char* other, std::int64_t part, std::int64_t all) {
    return std::string("<p>") + name + " <strong>" + Percent(part, all) + "</strong>, " + other + " " +
           Percent(all - part, all) + "</p><div class='split'>" + Width(part, all) + "</div>\n";
}

std::string Shares(const PageCounts& total) {
    return Split("Colour", "black-and-white and blank", total.color, total.pages) +
           Split("Two-sided", "one-sided", total.duplex, total.pages) +
           "<p class='note'>Shares of the pages.</p>";
}

std::string Months(const ReportNumbers& numbers) {
    ReportNumbers::ByName months;
    for (const auto& [day, counts] : numbers.days)
        months[day.substr(0, day.rfind('-'))] += counts;
    std::string rows;
    for (const auto& [month, of] : months)
        rows += CountsRow(month, of);
    return CountsTable("months", "Month", rows);
}

std::string Policy(const ReportNumbers& numbers) {
    std::string rows;
    for (std::size_t outcome = 0; outcome < OutcomeNames.size(); ++outcome) {
        const PageCounts& of = numbers.outcomes.at(outcome);
        rows += Row(OutcomeNames.at(outcome),
                    {Number(of.jobs), Percent(of.jobs, numbers.total.jobs), Number(of.pages)});
    }
    return Table("outcomes", {"Outcome", "Jobs", "Share", "Pages"}, rows);
}

std::string Rules(const ReportNumbers& numbers) {
    if (numbers.rules.empty())
        return "<p class='soft'>No job violates a rule.</p>";
    std::string rows;
    for (const auto& [rule, of] : numbers.rules)
        rows += Row("Rule " + std::to_string(rule.first),
                    {Html::Text(rule.second), Number(of.jobs), Number(of.pages)});
    return Table("rules", {"Rule", "Action", "Jobs", "Pages"}, rows) +
           "<p class='note'>A job that violates two rules counts for both.</p>";
}

std::string Problems(const ReportNumbers& numbers) {
    std::string rows;
    for (const InputProblem& problem : numbers.problems) {
        const bool isRecord = problem.record > 0;
        rows += Row(Html::Text(Utf8(problem.file)),
                    {isRecord ? std::to_string(problem.line) : "",
                     isRecord ? std::to_string(problem.record) : "", Html::Text(Utf8(problem.reason))});
    }
    std::string section =
        "<div class='problems'>" + Table("problems", {"File", "Line", "Record", "Reason"}, rows) + "</div>";
    if (const std::size_t more = numbers.problemCount - numbers.problems.size(); more > 0)
        section += "<p class='note'>" + Number(static_cast<std::int64_t>(more)) +
                   " more are not listed; <code>jobobjects export</code> lists all.</p>";
    return Section("Records that could not be read", section, "unread");
}

std::string Header(const ReportNumbers& numbers) {
    std::string header = "<header><h1>Print report</h1>\n<p class='soft'>";
    if (numbers.days.empty())
        header += "No job has a time";
    else
        header += numbers.days.begin()->first + " to " + numbers.days.rbegin()->first;
    header += "</p></header>\n";
    if (numbers.problemCount > 0)
        header += "<p class='notice'><strong>This report is partial.</strong> " +
                  Number(static_cast<std::int64_t>(numbers.problemCount)) +
                  (numbers.problemCount == 1 ? " record or file" : " records or files") +
                  " <a href='#unread'>could not be read</a> and " +
                  (numbers.problemCount == 1 ? "is" : "are") + " not counted.</p>\n";
    return header;
}

std::string Footnotes(const ReportNumbers& numbers, bool hasCatalogue) {
    std::string notes =
        "Pages include blank pages, over all copies. A sheet is one piece of paper. A job on two papers "
        "counts for both.";
    if (numbers.repeated > 0)
        notes += " " + Number(static_cast<std::int64_t>(numbers.repeated)) +
                 (numbers.repeated == 1 ? " job" : " jobs") + " came more than once and counted once.";
    if (!numbers.unknownPapers.empty()) {
        notes += " The catalogue does not define these papers: ";
        for (const std::string& paper : numbers.unknownPapers)
            notes += (notes.back() == ' ' ? "" : ", ") + Html::Text(paper);
        notes += ".";
    }
    if (!hasCatalogue)
        notes += " The catalogue could not be read: papers have the names that the records give them.";
    return "<p class='note'>" + notes + "</p>\n";
}

} // namespace

std::string ReportPage(const ReportNumbers& numbers, bool hasCatalogue) {
    const auto columns = [](const std::string& left, const std::string& right) {
        return "<div class='columns'>\n" + left + right + "</div>\n";
    };
    return std::string("<!DOCTYPE html>\n<html lang='en'>\n<head>\n<meta charset='utf-8'>\n"
                       "<meta name='viewport' content='width=device-width, initial-scale=1'>\n"
                       "<title>Print report</title>\n<style>") +
           ReportStyle + "</style>\n</head>\n<body>\n<main>\n" + Header(numbers) + Facts(numbers) +
           Section("Pages over time", PageChart(numbers.days)) +
           columns(
               Section("Pages by user", Ranking("users", "User", "users", numbers.users)),
               Section("Pages by printer", Ranking("printers", "Printer", "printers", numbers.Printers()))) +
           columns(Section("Pages by paper", Ranking("papers", "Paper", "papers", numbers.papers)),
                   Section("Pages by month", Months(numbers))) +
           columns(Section("Colour and two-sided", Shares(numbers.total)),
                   Section("Kinds of job", Kinds(numbers))) +
           columns(Section("Policy", Policy(numbers)), Section("Violated rules", Rules(numbers))) +
           (numbers.problemCount > 0 ? Problems(numbers) : "") + Footnotes(numbers, hasCatalogue) +
           "</main>\n</body>\n</html>\n";
}
