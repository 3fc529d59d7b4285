#pragma once

#include "QxLog.h"

#include <string_view>

/// Writes to the system debugger, one call per line, without the line end.
class QxTraceLog final : public QxLog {
public:
    QxTraceLog() : QxLog(L"Trace") {}

    void Write(std::wstring_view text) noexcept override;
};
