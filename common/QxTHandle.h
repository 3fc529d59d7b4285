#pragma once

#include "QxSystem.h"
#include "common/log/QxLogger.h"

#include <cstdint>

/// Owns an operating-system handle of the pointer type T; null and INVALID_HANDLE_VALUE mean no handle.
///
/// `static bool U::Close(T) noexcept` closes a handle; on failure it returns false and sets the last error.
template<class T, class U>
class QxTHandle {
public:
    QxTHandle() noexcept = default;
    /// Takes ownership.
    explicit QxTHandle(T handle) noexcept : m_handle(handle) {}
    QxTHandle(const QxTHandle&) = delete;
    QxTHandle& operator=(const QxTHandle&) = delete;
    ~QxTHandle() { Close(); }

    T Get() const noexcept { return m_handle; }
    bool IsOpen() const noexcept {
        return m_handle != nullptr && reinterpret_cast<std::uintptr_t>(m_handle) != UINTPTR_MAX;
    }
    /// Contract. Error code of the most recent failed close.
    std::uint32_t LastError() const noexcept { return m_lastError; }

    /// Closes and forgets the handle, if any. A failure is logged and stored in LastError.
    void Close() noexcept {
        if (!IsOpen())
            return;
        if (!U::Close(m_handle)) {
            m_lastError = ::GetLastError();
            QxMisc::LogSystemError(LogUtility, L"[QxTHandle<T, U>::Close] ", m_lastError);
        }
        m_handle = nullptr;
    }

private:
    std::uint32_t m_lastError = 0;
    T m_handle = nullptr;
};

/// For files, events, processes.
struct QxKernelHandleCloser {
    static bool Close(HANDLE handle) noexcept { return CloseHandle(handle) != FALSE; }
};
using QxKernelHandle = QxTHandle<HANDLE, QxKernelHandleCloser>;
