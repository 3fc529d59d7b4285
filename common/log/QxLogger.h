#pragma once

#include "QxLog.h"
#include "../QxLock.h"

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

/// Category of a message; the log's header shows all but the general one.
enum LogCategory : std::uint32_t {
    LogGeneral = 1,
    LogUtility = 0x10000, // value utilities, handle and registry wrappers
    LogCom = 0x20000,     // error reporting to COM callers
};

/// Writes one message under a category. Never throws; formats nothing when the message is filtered out.
/// Wide text arguments are "%ls".
void LogError(std::uint32_t category, const wchar_t* format, ...) noexcept;
/// The same under the general category.
void LogError(const wchar_t* format, ...) noexcept;
