#include "common/log/QxLogger.h"
#include "common/log/QxTraceLog.h"
#include "tests/support/DebuggerOutput.h"

#include <catch2/catch.hpp>

#include <string>
#include <vector>

TEST_CASE("TraceLog_is_named_trace") {
    const QxLogPtr log(new QxTraceLog);
    CHECK(log->Name() == L"Trace");
}

TEST_CASE("TraceLog_writes_one_line_per_call_without_its_line_end") {
    DebuggerOutput debugger;
    QxLogPtr(new QxTraceLog)->Write(L"one\ntwo\n\nthree\n");
    CHECK(debugger.lines == std::vector<std::string>{"one", "two", "", "three"});
}

TEST_CASE("Logger_trace_sink_gets_line_and_data_block") {
    DebuggerOutput debugger;
    QxLogger::Instance().Change([](LogConfiguration& configuration) {
        configuration.settings.enabled = true;
        configuration.sinks = {{std::make_shared<QxTraceLog>()}};
    });
    const unsigned char byte = 'A';
    LogErrorData(LogGeneral, L"> ", &byte, 1, L"line");
    QxLogger::Instance().Close();
    LogError(L"nowhere");
    CHECK(debugger.lines == std::vector<std::string>{"line", "> 00000000:  41" + std::string(50, ' ') + "A"});
}
