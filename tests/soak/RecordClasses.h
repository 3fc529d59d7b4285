#pragma once

#include "tests/support/ComClient.h"

#include <vector>

/// One of the classes with its Xml by the virtual table, for tests that treat all classes alike.
struct RecordClass {
    const wchar_t* name;
    CLSID classId;
    IID interfaceId;
    /// The object has to be one of this class, by its own interface.
    HRESULT (*putXml)(IUnknown* record, BSTR text);
    HRESULT (*getXml)(IUnknown* record, BSTR* text);
};

const std::vector<RecordClass>& RecordClasses();

/// A new object; the test fails if there is none.
ComPtr<IDispatch> CreateRecord(const RecordClass& of);
