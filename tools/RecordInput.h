#pragma once

#include "RecordReader.h"
#include "RecordStream.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

/// A record without rows, or a file that cannot be read to its end.
struct InputProblem {
    ExitCode code;
    std::wstring file;
    std::size_t line;   ///< 0 for a file
    std::size_t record; ///< in its file, from 1; 0 for a file
    std::wstring reason;

    /// "jobs.xml:3: record 2: ..."
    std::wstring Text() const;
};

/// Reads the records of files, one after the other.
class RecordInput {
public:
    /// The next record: that many files, and records of the file behind them, were read.
    struct Position {
        std::size_t files = 0;
        std::wstring file; ///< its name
        std::size_t records = 0;
    };

    explicit RecordInput(std::vector<std::wstring> files) : m_files(std::move(files)) {}

    /// Throws ToolError if the file at the position has another name.
    void SkipTo(const Position& position);
    /// Reads a record or meets a problem. Returns false at the end.
    bool Next(RecordRows& rows, std::optional<InputProblem>& problem);
    /// Behind the record that was read last.
    Position Behind() const;
    /// In front of it.
    Position Before() const;

private:
    InputProblem FileProblem(std::wstring reason) const;
    bool NextRecord(RecordRows& rows, std::optional<InputProblem>& problem);

    std::vector<std::wstring> m_files;
    std::size_t m_file = 0, m_records = 0, m_skip = 0;
    std::optional<RecordStream> m_stream;
    RecordReader m_reader;
};
