#pragma once

#include "QxLog.h"

#include <string_view>

/// Passes lines to the system debugger's output, one call per line and without the line end.
class QxTraceLog final : public QxLog {
public:
    QxTraceLog() : QxLog(L"Trace") {}

    void Write(std::wstring_view text) noexcept override;
};
