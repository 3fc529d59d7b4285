#include "common/log/QxLogger.h"
#include "common/log/QxTraceLog.h"

#include <catch2/catch.hpp>

#include <string>
#include <vector>

#include <windows.h>

namespace {

std::vector<std::string>* traced = nullptr;

/// Sees what goes to the debugger. The narrow form has its length and text in the first two parameters; the
/// system tries the wide form before it.
LONG CALLBACK NoteTrace(EXCEPTION_POINTERS* pointers) {
    constexpr DWORD printException = 0x40010006;
    const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
    if (record.ExceptionCode != printException)
        return EXCEPTION_CONTINUE_SEARCH;
    traced->emplace_back(reinterpret_cast<const char*>(record.ExceptionInformation[1]));
    return EXCEPTION_CONTINUE_EXECUTION;
}

/// Collects the debugger output while it lives.
struct Debugger {
    std::vector<std::string> lines;
    void* handler;

    Debugger() {
        traced = &lines;
        handler = AddVectoredExceptionHandler(1, NoteTrace);
    }
    ~Debugger() { RemoveVectoredExceptionHandler(handler); }
};

} // namespace

TEST_CASE("TraceLog_is_named_trace") {
    const QxLogPtr log(new QxTraceLog);
    CHECK(log->Name() == L"Trace");
}

TEST_CASE("TraceLog_passes_one_line_per_call_without_its_end") {
    Debugger debugger;
    QxLogPtr(new QxTraceLog)->Write(L"one\ntwo\n\nthree\n");
    CHECK(debugger.lines == std::vector<std::string>{"one", "two", "", "three"});
}

TEST_CASE("Logger_trace_sink_is_created_and_removed") {
    Debugger debugger;
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
