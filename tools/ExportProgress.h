#pragma once

#include "RecordInput.h"

#include <array>
#include <cstdint>
#include <string>

/// What an interrupted export needs to continue: kept in a file beside its tables, which exists while they
/// are partial.
struct ExportProgress {
    static constexpr std::size_t Tables = 5;

    RecordInput::Position position;
    std::array<std::uint64_t, Tables> sizes{}; ///< of the tables' files
    std::array<std::uint64_t, Tables> rowCounts{};
    ExitCode result = ExitOk;
    bool isComplete = false; ///< the tables only need their names

    /// Throws ToolError.
    void Write(const std::wstring& path) const;
    static ExportProgress Read(const std::wstring& path);
};
