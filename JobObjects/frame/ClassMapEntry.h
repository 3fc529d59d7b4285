#pragma once

#include <windows.h>
#include <unknwn.h>

/// One creatable class: everything that class objects, registration and unregistration need.
struct ClassMapEntry {
    const CLSID* classId;
    /// "PrintJob": the ProgIDs and the description are formed from it.
    const wchar_t* name;
    bool aggregatable;
    /// Makes an instance and queries it for an interface.
    HRESULT (*createInstance)(IUnknown* outer, REFIID iid, void** object) noexcept;
};
