// The C library's wide-character functions for two-byte characters, as on Windows. The parser's vectorised
// searches work only on these.

#include <cstddef>

static_assert(sizeof(wchar_t) == 2, "to be compiled with -fshort-wchar");

extern "C" {

wchar_t* wmemcpy(wchar_t* to, const wchar_t* from, std::size_t count) {
    return static_cast<wchar_t*>(__builtin_memcpy(to, from, count * sizeof(wchar_t)));
}

wchar_t* wmemmove(wchar_t* to, const wchar_t* from, std::size_t count) {
    return static_cast<wchar_t*>(__builtin_memmove(to, from, count * sizeof(wchar_t)));
}

wchar_t* wmemset(wchar_t* to, wchar_t character, std::size_t count) {
    for (std::size_t at = 0; at < count; ++at)
        to[at] = character;
    return to;
}

int wmemcmp(const wchar_t* a, const wchar_t* b, std::size_t count) {
    if (__builtin_memcmp(a, b, count * sizeof(wchar_t)) == 0)
        return 0;
    for (std::size_t at = 0; at < count; ++at)
        if (a[at] != b[at])
            return a[at] < b[at] ? -1 : 1;
    return 0;
}

const wchar_t* wmemchr(const wchar_t* text, wchar_t character, std::size_t count) {
    for (std::size_t at = 0; at < count; ++at)
        if (text[at] == character)
            return text + at;
    return nullptr;
}

std::size_t wcslen(const wchar_t* text) {
    std::size_t length = 0;
    while (text[length] != 0)
        ++length;
    return length;
}

} // extern "C"
