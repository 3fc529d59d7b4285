#pragma once

#include "common/text/QxString.h"

#include <cstdint>

#include <windows.h>

/// Owns an open registry key.
///
/// A read of a value that is missing, unreadable or of another type returns false, leaves the target
/// unchanged and sets LastError.
class QxRegistryHdl {
public:
    QxRegistryHdl() noexcept = default;
    QxRegistryHdl(const QxRegistryHdl&) = delete;
    QxRegistryHdl& operator=(const QxRegistryHdl&) = delete;
    ~QxRegistryHdl() { Close(); }

    /// Closes the current key and opens the subkey. False on failure.
    bool Open(HKEY rootKey, const wchar_t* subkey, REGSAM access) noexcept;
    /// The same for writing; creates a missing subkey.
    bool Create(HKEY rootKey, const wchar_t* subkey) noexcept;
    /// Closes and forgets the key, if any; logs a failure.
    void Close() noexcept;

    /// Reads a REG_DWORD.
    bool ReadNumber(const wchar_t* name, std::uint32_t& value) noexcept;
    /// Reads a REG_DWORD as a flag.
    bool ReadBool(const wchar_t* name, bool& value) noexcept;
    /// Reads a REG_SZ or REG_EXPAND_SZ up to its first NUL, without expanding it. Throws std::bad_alloc.
    bool ReadString(const wchar_t* name, QxString& value);

    /// Writes a REG_SZ; a null name is the key's default value.
    bool WriteString(const wchar_t* name, const wchar_t* value) noexcept;

    /// Error code of the most recent failure.
    std::uint32_t LastError() const noexcept { return m_lastError; }

private:
    /// Stores the code of a failure. True for ERROR_SUCCESS.
    bool Check(LSTATUS status) noexcept;

    std::uint32_t m_lastError = 0;
    HKEY m_key = nullptr;
};
