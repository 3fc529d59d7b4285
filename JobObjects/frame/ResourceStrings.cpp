#include "ResourceStrings.h"

#include "ServerModule.h"

#include <windows.h>

// Not LoadString: it would load user32, which fails in a process without access to the window station.

namespace {

/// A string table is stored in blocks of this many texts, each a length followed by the characters.
constexpr unsigned BlockSize = 16;

std::wstring_view Block(unsigned number) noexcept {
    const HMODULE module = OwnModule().Instance();
    HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(number), RT_STRING);
    if (!resource)
        return {};
    HGLOBAL loaded = LoadResource(module, resource);
    if (!loaded)
        return {};
    return {static_cast<const wchar_t*>(LockResource(loaded)),
            SizeofResource(module, resource) / sizeof(wchar_t)};
}

} // namespace

std::wstring_view LoadResourceString(ResourceString id) noexcept {
    std::wstring_view block = Block(id / BlockSize + 1); // blocks count from 1
    for (unsigned skipped = 0; !block.empty(); ++skipped) {
        const std::wstring_view text = block.substr(1, block.front());
        if (skipped == id % BlockSize)
            return text;
        block.remove_prefix(1 + text.size());
    }
    return {};
}
