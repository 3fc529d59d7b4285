#include "SystemText.h"

#include <memory>

namespace {

struct LocalRelease {
    void operator()(wchar_t* block) const noexcept { LocalFree(block); }
};

} // namespace

std::wstring SystemText(DWORD code, DWORD language, SystemTextLines lines) {
    DWORD flags = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    if (lines == SystemTextLines::One)
        flags |= FORMAT_MESSAGE_MAX_WIDTH_MASK;
    wchar_t* found = nullptr;
    // With FORMAT_MESSAGE_ALLOCATE_BUFFER this argument is the address of the buffer pointer.
    const DWORD length =
        FormatMessageW(flags, nullptr, code, language, reinterpret_cast<wchar_t*>(&found), 0, nullptr);
    if (length == 0)
        return {};
    const std::unique_ptr<wchar_t, LocalRelease> release(found);
    return std::wstring(found, length);
}
