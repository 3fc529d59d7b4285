#pragma once

#include "tests/support/ComClient.h"

#include <vector>

/// A class with its Xml property through the vtable, for tests over all classes.
struct RecordClass {
    const wchar_t* name;
    CLSID classId;
    IID interfaceId;
    /// The object must be of this class, passed as its own interface.
    HRESULT (*putXml)(IUnknown* record, BSTR text);
    HRESULT (*getXml)(IUnknown* record, BSTR* text);
};

const std::vector<RecordClass>& RecordClasses();

/// Creates an object; the test fails if that fails.
ComPtr<IDispatch> CreateRecord(const RecordClass& of);
