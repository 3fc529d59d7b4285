#pragma once

#include "QxSystem.h"
#include "common/log/QxLogger.h"

#include <cstdint>
#include <utility>

/// Owns one operating-system handle and closes it on destruction.
///
/// T is the handle's type, a pointer; U says how it is closed: `static bool U::Close(T) noexcept` returns
/// false on a failure and leaves the reason as the last error. A null handle and the invalid-handle value
/// count as no handle.
template<class T, class U>
class QxTHandle {
public:
    QxTHandle() noexcept = default;
    /// Takes the handle over.
    explicit QxTHandle(T handle) noexcept : m_handle(handle) {}
    QxTHandle(QxTHandle&& other) noexcept
        : m_lastError(other.m_lastError), m_handle(std::exchange(other.m_handle, nullptr)) {}
    QxTHandle& operator=(QxTHandle&& other) noexcept {
        if (this != &other) {
            Close();
            m_lastError = other.m_lastError;
            m_handle = std::exchange(other.m_handle, nullptr);
        }
        return *this;
    }
    ~QxTHandle() { Close(); }

    T Get() const noexcept { return m_handle; }
    bool IsOpen() const noexcept {
        return m_handle != nullptr && reinterpret_cast<std::uintptr_t>(m_handle) != UINTPTR_MAX;
    }
    /// Error code of the most recent close that failed.
    std::uint32_t LastError() const noexcept { return m_lastError; }

    /// Closes the handle and forgets it, also when the system refuses; that is logged and kept in LastError.
    /// Does nothing without a handle. Never throws.
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

/// Closes kernel objects: files, events, processes.
struct QxKernelHandleCloser {
    static bool Close(HANDLE handle) noexcept { return CloseHandle(handle) != FALSE; }
};
using QxKernelHandle = QxTHandle<HANDLE, QxKernelHandleCloser>;
