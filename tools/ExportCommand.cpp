// export: records as tables.

#include "Commands.h"
#include "Console.h"
#include "Escaping.h"
#include "ExportProgress.h"
#include "Files.h"
#include "Installation.h"
#include "SystemError.h"
#include "TableWriter.h"
#include "UnknownWords.h"
#include "Utf8.h"

#include <algorithm>
#include <list>

namespace {

constexpr std::array RejectedColumns{"file", "line", "record", "reason"};
constexpr std::size_t RejectedTable = RecordTables.size();
static_assert(ExportProgress::Tables == RejectedTable + 1);

constexpr ULONGLONG MillisecondsBetweenCommits = 2000;
/// A damaged file of a million records must not bury the summary.
constexpr std::size_t MostProblems = 1000;

TableForm FormOf(std::size_t table) {
    return table == RejectedTable ? TableForm{"rejected", RejectedColumns} : RecordTables.at(table);
}

std::wstring NameOf(std::size_t table) {
    const std::string name = FormOf(table).name;
    return {name.begin(), name.end()};
}

void Rename(const std::wstring& from, const std::wstring& to) {
    if (!MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_WRITE_THROUGH))
        throw ToolError(to + L": " + ErrorText(HRESULT_FROM_WIN32(GetLastError())));
}

class Exporting {
public:
    explicit Exporting(const Options& options)
        : m_options(options),
          m_format(options.format == Format::Json ? Format::Json : Format::Csv),
          m_input(ExpandFolders(options.files)),
          m_rejectedRow(RejectedColumns.size()) {
        m_writers.resize(ExportProgress::Tables);
    }

    ExitCode Run();

private:
    std::wstring PathOf(std::size_t table) const {
        return m_options.output + L"\\" + NameOf(table) + (m_format == Format::Json ? L".jsonl" : L".csv");
    }
    std::wstring PartialPathOf(std::size_t table) const { return PathOf(table) + L".partial"; }
    std::wstring ProgressPath() const { return m_options.output + L"\\export.partial"; }
    bool IsToFolder() const { return !m_options.output.empty(); }

    void OpenOutput();
    void OpenFolder();
    void RefuseExistingTables() const;
    bool ExportRecords();
    void Write(std::size_t table, const TableRow& row);
    void Reject(const InputProblem& problem);
    void Commit(const RecordInput::Position& position);
    void Finish();
    void Summarize(bool isWhole) const;

    const Options& m_options;
    Format m_format;
    RecordInput m_input;
    ExportProgress m_progress;
    std::vector<std::optional<TableWriter>> m_writers; ///< empty for a table that is not wanted
    TableRow m_rejectedRow;
    UnknownWords m_unknown;
    std::size_t m_problems = 0;
};

void Exporting::OpenOutput() {
    if (IsToFolder()) {
        OpenFolder();
        return;
    }
    const std::wstring wanted = m_options.table.empty() ? L"jobs" : m_options.table;
    bool isKnown = false;
    for (std::size_t table = 0; table < ExportProgress::Tables; ++table) {
        const TableForm form = FormOf(table);
        const bool isJson = m_format == Format::Json;
        const bool isWanted = isJson && m_options.table.empty() ? true : NameOf(table) == wanted;
        isKnown = isKnown || isWanted;
        if (isWanted)
            m_writers[table].emplace(TableWriter::Form{isJson ? form.name : nullptr, form.columns, m_format});
    }
    if (!isKnown)
        throw UsageError{L"unknown table " + wanted};
}

void Exporting::RefuseExistingTables() const {
    for (std::size_t table = 0; table < ExportProgress::Tables; ++table)
        for (const std::wstring& path : {PathOf(table), PartialPathOf(table)})
            if (FileExists(path))
                throw ToolError(path + L" exists", L"Name another folder.");
}

void Exporting::OpenFolder() {
    const bool isInterrupted = FileExists(ProgressPath());
    if (isInterrupted && !m_options.continues)
        throw ToolError(m_options.output + L" has an interrupted export",
                        L"Use --continue to complete it, or name another folder.");
    if (isInterrupted) {
        m_progress = ExportProgress::Read(ProgressPath());
        m_input.SkipTo(m_progress.position);
    } else {
        if (!IsFolder(m_options.output) && !CreateDirectoryW(m_options.output.c_str(), nullptr))
            throw ToolError(m_options.output + L": " + ErrorText(HRESULT_FROM_WIN32(GetLastError())));
        RefuseExistingTables();
    }
    if (m_progress.isComplete)
        return;
    for (std::size_t table = 0; table < ExportProgress::Tables; ++table)
        m_writers[table].emplace(TableWriter::Form{nullptr, FormOf(table).columns, m_format},
                                 PartialPathOf(table), m_progress.sizes.at(table));
    Commit(m_input.Behind());
}

/// What is written so far stays after an interruption.
void Exporting::Commit(const RecordInput::Position& position) {
    if (!IsToFolder())
        return;
    for (std::size_t table = 0; table < ExportProgress::Tables; ++table)
        m_progress.sizes.at(table) = m_writers[table]->Commit();
    m_progress.position = position;
    m_progress.Write(ProgressPath());
}

void Exporting::Write(std::size_t table, const TableRow& row) {
    ++m_progress.rowCounts.at(table);
    if (m_writers[table])
        m_writers[table]->Add(row);
}

void Exporting::Reject(const InputProblem& problem) {
    m_progress.result = Worse(m_progress.result, problem.code);
    if (++m_problems <= MostProblems)
        Console::ErrorLine(problem.Text());
    for (TableCell& cell : m_rejectedRow)
        cell.Clear();
    AppendUtf8(m_rejectedRow[0].SetText(), problem.file);
    if (problem.record > 0) {
        m_rejectedRow[1].SetNumber(static_cast<std::int64_t>(problem.line));
        m_rejectedRow[2].SetNumber(static_cast<std::int64_t>(problem.record));
    }
    AppendUtf8(m_rejectedRow[3].SetText(), problem.reason);
    Write(RejectedTable, m_rejectedRow);
}

/// Returns false if it stops at a problem.
bool Exporting::ExportRecords() {
    RecordRows rows;
    std::optional<InputProblem> problem;
    ULONGLONG committed = GetTickCount64();
    while (m_input.Next(rows, problem)) {
        if (problem && m_options.stopsAtProblem) {
            Console::ErrorLine(problem->Text());
            m_progress.result = Worse(m_progress.result, problem->code);
            // Continuing reads the record again.
            Commit(m_input.Before());
            return false;
        }
        if (problem)
            Reject(*problem);
        m_unknown.Check(rows);
        for (std::size_t table = 0; table < RecordTables.size(); ++table)
            for (const TableRow& row : rows[static_cast<RecordTable>(table)])
                Write(table, row);
        if (const ULONGLONG now = GetTickCount64(); now - committed >= MillisecondsBetweenCommits) {
            Commit(m_input.Behind());
            committed = now;
        }
    }
    return true;
}

/// The tables get their names when they are whole.
void Exporting::Finish() {
    if (!IsToFolder()) {
        for (auto& writer : m_writers)
            if (writer)
                writer->Flush();
        return;
    }
    if (!m_progress.isComplete) {
        m_progress.isComplete = true;
        Commit(m_input.Behind());
        for (auto& writer : m_writers)
            writer.reset();
    }
    for (std::size_t table = 0; table < ExportProgress::Tables; ++table)
        if (FileExists(PartialPathOf(table)))
            Rename(PartialPathOf(table), PathOf(table));
    DeleteFileW(ProgressPath().c_str());
}

void Exporting::Summarize(bool isWhole) const {
    Console::EndProgress();
    if (m_problems > MostProblems)
        Console::ErrorLine(Count(m_problems - MostProblems, L"more problem") + L" not shown" +
                           (IsToFolder() ? L"; " + PathOf(RejectedTable) + L" has all" : L""));
    const auto rejected = static_cast<std::size_t>(m_progress.rowCounts.at(RejectedTable));
    if (!isWhole)
        Console::ErrorLine(IsToFolder() ? L"The export is partial. Continue it with --continue."
                                        : L"The output is partial.");
    else if (rejected > 0)
        Console::ErrorLine(Count(rejected, L"problem") + L": the records named above are left out.");
    for (const std::wstring& message : m_unknown.Messages())
        Console::ErrorLine(message);
    if (!IsToFolder())
        return;
    for (std::size_t table = 0; table < ExportProgress::Tables; ++table)
        Console::Line((isWhole ? PathOf(table) : PartialPathOf(table)) + L": " +
                      Count(static_cast<std::size_t>(m_progress.rowCounts.at(table)), L"row"));
}

ExitCode Exporting::Run() {
    OpenOutput();
    bool isWhole = true;
    try {
        isWhole = m_progress.isComplete || ExportRecords();
        if (!m_unknown.Messages().empty())
            m_progress.result = Worse(m_progress.result, ExitFindings);
        if (isWhole)
            Finish();
    } catch (const ToolError& error) {
        Console::ErrorLine(error);
        m_progress.result = ExitCannotRun;
        isWhole = false;
    }
    Summarize(isWhole);
    return m_progress.result;
}

} // namespace

ExitCode Export(const Options& options) {
    if (options.continues && options.output.empty())
        throw UsageError{L"--continue needs -o and a folder"};
    if (!options.table.empty() && !options.output.empty())
        throw UsageError{L"--table and -o exclude each other"};
    return Exporting(options).Run();
}
