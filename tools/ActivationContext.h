#pragma once

#include <string>

#include <windows.h>

/// What a manifest selects, active on this thread while the object lives.
class ActivationContext {
public:
    ActivationContext() = default;
    ActivationContext(const ActivationContext&) = delete;
    ActivationContext& operator=(const ActivationContext&) = delete;
    ~ActivationContext();

    enum class Result { Active, NoManifest, Failed };

    /// Activates the manifest of a program: its resource, or the file beside it.
    Result OfProgram(const std::wstring& program);
    /// Activates a manifest file. On failure, GetLastError has the reason.
    bool OfFile(const std::wstring& manifest);

    /// Whether the thread's manifest selects the library.
    static bool SelectsLibrary();

private:
    bool Activate(const ACTCTXW& source);

    HANDLE m_context = INVALID_HANDLE_VALUE;
    ULONG_PTR m_cookie = 0;
};
