#pragma once

#include "common/text/QxString.h"

#include <cstdint>

#include <windows.h>

/// Owns one open registry key, reads and writes its values and closes it on destruction.
///
/// A reader returns false, leaves its target unchanged and keeps the reason in LastError when the value is
/// missing, cannot be read or is of another type.
class QxRegistryHdl {
public:
    QxRegistryHdl() noexcept = default;
    QxRegistryHdl(const QxRegistryHdl&) = delete;
    QxRegistryHdl& operator=(const QxRegistryHdl&) = delete;
    ~QxRegistryHdl() { Close(); }

    /// Closes the key already held and opens the subkey. Returns false on a failure.
    bool Open(HKEY rootKey, const wchar_t* subkey, REGSAM access) noexcept;
    /// The same, to write to the subkey, which is created if it is missing.
    bool Create(HKEY rootKey, const wchar_t* subkey) noexcept;
    /// Closes the key, if one is held, and forgets it; a refusal is logged.
    void Close() noexcept;
    bool IsOpen() const noexcept { return m_key != nullptr; }

    /// Reads a value of the 32-bit number type.
    bool ReadNumber(const wchar_t* name, std::uint32_t& value) noexcept;
    /// Reads a 32-bit number as a flag: any but zero is true.
    bool ReadBool(const wchar_t* name, bool& value) noexcept;
    /// Reads a plain or expandable string, up to its first NUL. Environment variables are not expanded.
    /// Throws std::bad_alloc.
    bool ReadString(const wchar_t* name, QxString& value);

    /// Writes a plain string; a null name is the key's default value.
    bool WriteString(const wchar_t* name, const wchar_t* value) noexcept;

    /// System error code of the most recent call that failed.
    std::uint32_t LastError() const noexcept { return m_lastError; }

private:
    /// Keeps the code of a failure. True for ERROR_SUCCESS.
    bool Check(LSTATUS status) noexcept;

    std::uint32_t m_lastError = 0;
    HKEY m_key = nullptr;
};
