#pragma once

#include <filesystem>
#include <string>
#include <vector>

enum class Result { Passed, Failed, LeftOut };

/// The result of a test case, or of a test without cases.
struct CaseResult {
    std::string name;
    Result result;
    std::string reason; ///< why it failed or was left out
    std::string output; ///< if it failed
};

/// A row of the table: a test with its cases.
struct Row {
    std::string name;
    std::vector<CaseResult> cases;
    unsigned seconds = 0;

    std::size_t Count(Result result) const;
};

/// The table on the console and the file with all results.
class Report {
public:
    /// A fact about the run, such as the version of Windows.
    void AddFact(const std::string& fact);
    void AddRow(Row row);

    /// Whether tests passed and none failed.
    bool Passed() const;
    /// False if the file cannot be written.
    bool Write(const std::filesystem::path& file) const;

private:
    std::string Totals() const;
    std::string Section(Result result) const;

    std::vector<std::string> m_facts;
    std::vector<Row> m_rows;
};
