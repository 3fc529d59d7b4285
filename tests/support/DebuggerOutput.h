#pragma once

#include <string>
#include <vector>

#include <windows.h>

/// Collects the process's debugger output during its lifetime. At most one instance at a time.
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
    /// The system raises the wide form first, then the narrow one with the parameters length and text.
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
