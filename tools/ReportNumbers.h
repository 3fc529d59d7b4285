#pragma once

#include "RecordInput.h"
#include "RecordTables.h"

#include <array>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

/// Counts of some jobs, in the glossary's words.
struct PageCounts {
    std::int64_t jobs = 0, pages = 0, color = 0, duplex = 0, sheets = 0;

    PageCounts& operator+=(const PageCounts& other) noexcept;
};

/// What a policy did with a job.
enum class Outcome : std::size_t { NoPolicy, Kept, Informed, Violated, Cancelled };

/// The numbers of a report, added up from the rows of records. They are those of database/queries.
class ReportNumbers {
public:
    using ByName = std::map<std::string, PageCounts>;

    /// `paperNames` are the catalogue's names by code.
    explicit ReportNumbers(std::map<std::int64_t, std::string> paperNames)
        : m_papers(std::move(paperNames)) {}

    /// Counts a job once, even if it comes again.
    void Add(const RecordRows& rows);
    void Add(const InputProblem& problem);

    PageCounts total;
    ByName kinds, users, papers, days; ///< a job on two papers counts for both; days are like "2025-03-04"
    std::array<PageCounts, 5> outcomes;
    std::map<std::pair<std::int64_t, std::string>, PageCounts> rules; ///< by trigger and action
    std::set<std::string> unknownPapers;                              ///< papers without a code
    std::size_t repeated = 0;
    std::size_t problemCount = 0;
    std::vector<InputProblem> problems; ///< the first ones

    /// The names of logical printers are known when all records are read.
    ByName Printers() const;

private:
    struct Printer {
        std::string name, lastUsed;
    };

    void AddJob(const TableRow& job, const RecordRows& rows);
    std::string PaperOf(const TableRow& line);
    bool IsRepeated(const TableRow& job);
    void AddPrinter(const TableRow& printer);

    std::map<std::int64_t, std::string> m_papers;
    std::map<std::string, Printer> m_printers; ///< by GUID
    std::map<std::pair<std::int64_t, std::string>, PageCounts> m_targets;
    std::unordered_set<std::string> m_identities;
};
