#include "DebuggerOutput.h"
#include "common/log/QxLogger.h"
#include "common/log/QxTraceLog.h"

#include <catch2/catch.hpp>

#include <string>
#include <vector>

TEST_CASE("TraceLog_is_named_trace") {
    const QxLogPtr log(new QxTraceLog);
    CHECK(log->Name() == L"Trace");
}

TEST_CASE("TraceLog_passes_one_line_per_call_without_its_end") {
    DebuggerOutput debugger;
    QxLogPtr(new QxTraceLog)->Write(L"one\ntwo\n\nthree\n");
    CHECK(debugger.lines == std::vector<std::string>{"one", "two", "", "three"});
}

TEST_CASE("Logger_trace_sink_is_created_and_removed") {
    DebuggerOutput debugger;
    LogSettings settings;
    settings.enabled = true;
    QxLogger::Instance().SetSettings(settings);
    QxLogger::Instance().SetTraceLog(true);
    const unsigned char byte = 'A';
    LogErrorData(LogGeneral, L"> ", &byte, 1, L"line");
    QxLogger::Instance().SetTraceLog(true);
    LogError(L"once");
    QxLogger::Instance().SetTraceLog(false);
    LogError(L"nowhere");
    QxLogger::Instance().Close();
    CHECK(debugger.lines ==
          std::vector<std::string>{"line", "> 00000000:  41" + std::string(50, ' ') + "A", "once"});
}
