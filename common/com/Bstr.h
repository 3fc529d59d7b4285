#pragma once

#include "common/text/QxString.h"

#include <windows.h>
#include <oleauto.h>

#include <new>
#include <string_view>
#include <utility>

/// The text of a BSTR, embedded NULs included; empty for null.
inline std::wstring_view BstrView(BSTR text) noexcept {
    return text ? std::wstring_view(text, SysStringLen(text)) : std::wstring_view();
}

/// A new BSTR for an out-parameter. Throws std::bad_alloc.
inline BSTR NewBstr(std::wstring_view text) {
    BSTR copy = text.size() <= static_cast<UINT>(-1)
                    ? SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))
                    : nullptr;
    if (!copy)
        throw std::bad_alloc();
    return copy;
}

/// Owns a BSTR.
class UniqueBstr {
public:
    constexpr UniqueBstr() noexcept = default;
    explicit UniqueBstr(std::wstring_view text) : m_text(NewBstr(text)) {}
    UniqueBstr(UniqueBstr&& other) noexcept : m_text(std::exchange(other.m_text, nullptr)) {}
    UniqueBstr& operator=(UniqueBstr other) noexcept {
        std::swap(m_text, other.m_text);
        return *this;
    }
    ~UniqueBstr() { SysFreeString(m_text); }

    BSTR Get() const noexcept { return m_text; }
    std::wstring_view View() const noexcept { return BstrView(m_text); }
    /// For out-parameters.
    BSTR* Put() noexcept {
        *this = UniqueBstr();
        return &m_text;
    }
    BSTR Detach() noexcept { return std::exchange(m_text, nullptr); }

private:
    BSTR m_text = nullptr;
};
