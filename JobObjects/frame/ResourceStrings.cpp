#include "ResourceStrings.h"

#include "ServerModule.h"

std::wstring_view LoadResourceString(ResourceString id) noexcept {
    const wchar_t* text = nullptr;
    // With no room given, LoadString hands out a pointer into the resource instead of copying it.
    const int length = LoadStringW(OwnModule().Instance(), id, reinterpret_cast<wchar_t*>(&text), 0);
    return length > 0 ? std::wstring_view(text, static_cast<std::size_t>(length)) : std::wstring_view();
}
