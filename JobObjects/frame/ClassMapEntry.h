#pragma once

#include <windows.h>
#include <unknwn.h>

/// One creatable class, for class objects and registration.
struct ClassMapEntry {
    const CLSID* classId;
    /// Such as "PrintJob"; ProgIDs and description derive from it.
    const wchar_t* name;
    bool aggregatable;
    /// Creates an instance and queries an interface.
    HRESULT (*createInstance)(IUnknown* outer, REFIID iid, void** object) noexcept;
};
