#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

namespace QxMisc {

template<std::size_t Count>
void CopyExactly(wchar_t* to, const wchar_t* from) noexcept {
    std::memcpy(to, from, Count * sizeof(wchar_t));
}

/// Copies a text and returns the end of the copy. Pieces of fixed size, of which the last may overlap the one
/// before: faster than a call of the C library for names and short values.
inline wchar_t* CopyText(wchar_t* to, std::wstring_view from) noexcept {
    const std::size_t length = from.size();
    const wchar_t* const characters = from.data();
    if (length >= 8) {
        for (std::size_t at = 0; at < length - 8; at += 8)
            CopyExactly<8>(to + at, characters + at);
        CopyExactly<8>(to + length - 8, characters + length - 8);
    } else if (length >= 4) {
        CopyExactly<4>(to, characters);
        CopyExactly<4>(to + length - 4, characters + length - 4);
    } else if (length > 0) {
        to[0] = characters[0];
        to[length / 2] = characters[length / 2];
        to[length - 1] = characters[length - 1];
    }
    return to + length;
}

} // namespace QxMisc
