#pragma once

#include <string>
#include <vector>

#include <windows.h>

/// Collects what the process sends to the debugger while it lives; one at a time.
class DebuggerOutput {
public:
    DebuggerOutput() : m_handler(AddVectoredExceptionHandler(1, Note)) { s_lines = &lines; }
    DebuggerOutput(const DebuggerOutput&) = delete;
    DebuggerOutput& operator=(const DebuggerOutput&) = delete;
    ~DebuggerOutput() {
        RemoveVectoredExceptionHandler(m_handler);
        s_lines = nullptr;
    }

    std::vector<std::string> lines;

private:
    /// The narrow form has its length and text in the first two parameters; the system tries the wide form
    /// before it.
    static LONG CALLBACK Note(EXCEPTION_POINTERS* pointers) {
        constexpr DWORD printException = 0x40010006;
        const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
        if (record.ExceptionCode != printException)
            return EXCEPTION_CONTINUE_SEARCH;
        s_lines->emplace_back(reinterpret_cast<const char*>(record.ExceptionInformation[1]));
        return EXCEPTION_CONTINUE_EXECUTION;
    }

    static inline std::vector<std::string>* s_lines = nullptr;
    void* m_handler;
};
