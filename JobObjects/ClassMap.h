#pragma once

#include <windows.h>
#include <unknwn.h>

#include <array>

/// One creatable class: all that class objects, registration and unregistration need to know of it.
struct ClassMapEntry {
    const CLSID* classId;
    /// "PrintJob": the ProgIDs and the description are formed from it.
    const wchar_t* name;
    bool aggregatable;
    /// Makes an instance and queries it for an interface.
    HRESULT (*createInstance)(IUnknown* outer, REFIID iid, void** object) noexcept;
};

/// The ten classes, in the order of registration and of lookup.
inline constexpr std::size_t ClassCount = 10;
extern const std::array<ClassMapEntry, ClassCount> ClassMap;
