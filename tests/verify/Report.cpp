#include "Report.h"

#include <cstdio>
#include <fstream>

namespace {

constexpr std::size_t LongestOutput = 8000; // its end says most

std::string TableLine(const std::string& name, const std::string& passed, const std::string& failed,
                      const std::string& leftOut, const std::string& seconds) {
    char line[300];
    std::snprintf(line, sizeof(line), "%-52.200s %7s %7s %9s %8s\n", name.c_str(), passed.c_str(),
                  failed.c_str(), leftOut.c_str(), seconds.c_str());
    return line;
}

std::string TableLine(const Row& row) {
    return TableLine(row.name, std::to_string(row.Count(Result::Passed)),
                     std::to_string(row.Count(Result::Failed)), std::to_string(row.Count(Result::LeftOut)),
                     std::to_string(row.seconds));
}

const std::string& TableHeader() {
    static const std::string header = TableLine("test", "passed", "failed", "left out", "seconds");
    return header;
}

void Print(const std::string& text) {
    std::fputs(text.c_str(), stdout);
    std::fflush(stdout);
}

std::string FullName(const Row& row, const CaseResult& each) {
    return each.name.empty() ? row.name : row.name + ": " + each.name;
}

std::string Indented(const std::string& output) {
    std::string text = "    ";
    if (output.size() > LongestOutput)
        text += "...";
    for (const char c : output.size() > LongestOutput ? output.substr(output.size() - LongestOutput) : output)
        if (c == '\n')
            text += "\n    ";
        else if (c != '\r')
            text += c;
    return text + "\n";
}

} // namespace

std::size_t Row::Count(Result result) const {
    std::size_t count = 0;
    for (const CaseResult& each : cases)
        count += each.result == result;
    return count;
}

void Report::AddFact(const std::string& fact) {
    m_facts.push_back(fact);
    Print(fact + "\n");
}

void Report::AddRow(Row row) {
    if (m_rows.empty())
        Print("\n" + TableHeader());
    Print(TableLine(row));
    for (const CaseResult& each : row.cases)
        if (each.result == Result::Failed)
            Print("    FAILED " + each.name + ": " + each.reason + "\n");
    m_rows.push_back(std::move(row));
}

bool Report::Passed() const {
    std::size_t passed = 0, failed = 0;
    for (const Row& row : m_rows) {
        passed += row.Count(Result::Passed);
        failed += row.Count(Result::Failed);
    }
    return passed > 0 && failed == 0;
}

std::string Report::Totals() const {
    Row all{"total", {}};
    for (const Row& row : m_rows) {
        all.cases.insert(all.cases.end(), row.cases.begin(), row.cases.end());
        all.seconds += row.seconds;
    }
    return TableLine(all) + (Passed() ? "PASSED\n" : "FAILED\n");
}

std::string Report::Section(Result result) const {
    std::string text;
    for (const Row& row : m_rows)
        for (const CaseResult& each : row.cases) {
            if (each.result != result)
                continue;
            text += FullName(row, each) + (each.reason.empty() ? "" : ": " + each.reason) + "\n";
            if (result == Result::Failed)
                text += Indented(each.output);
        }
    return text.empty() ? "none\n" : text;
}

bool Report::Write(const std::filesystem::path& file) const {
    Print(Totals());
    std::ofstream stream(file, std::ios::binary);
    for (const std::string& fact : m_facts)
        stream << fact << '\n';
    stream << '\n' << TableHeader();
    for (const Row& row : m_rows)
        stream << TableLine(row);
    stream << Totals();
    stream << "\n== failed\n" << Section(Result::Failed);
    stream << "\n== left out\n" << Section(Result::LeftOut);
    stream << "\n== passed\n" << Section(Result::Passed);
    stream.close();
    return stream.good();
}
