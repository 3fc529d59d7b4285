#pragma once

#include "ChildClass.h"
#include "common/com/Bstr.h"
#include "common/com/ErrorReporting.h"

// Records create children and exchange XML with them through COM only, so any object with the interface can
// be a child. Failures are thrown as ComErrors.

/// Creates an object by ProgID in any server context, runs it (OleRun) and queries the interface. Returns the
/// result of the failed step.
HRESULT CreateByProgId(const wchar_t* progId, REFIID iid, void** object) noexcept;

template<class Interface>
ComPtr<Interface> CreateChild() {
    ComPtr<Interface> child;
    ThrowIfFailed(CreateByProgId(ChildClass<Interface>::ProgId, ChildClass<Interface>::Iid, child.PutVoid()));
    return child;
}

// By value: the call can re-enter the record and replace the child.

/// A failure carries the child's error information; E_POINTER without a child.
template<class Interface>
UniqueBstr GetChildXml(ComPtr<Interface> child) {
    ThrowIfFailed(child ? S_OK : E_POINTER);
    UniqueBstr xml;
    CallObject(child.Get(), ChildClass<Interface>::Iid, [&] { return child->get_Xml(xml.Put()); });
    return xml;
}

template<class Interface>
void PutChildXml(ComPtr<Interface> child, std::wstring_view xml) {
    ThrowIfFailed(child ? S_OK : E_POINTER);
    const UniqueBstr text(xml);
    CallObject(child.Get(), ChildClass<Interface>::Iid, [&] { return child->put_Xml(text.Get()); });
}

/// A new child filled from XML, for properties that return copies.
template<class Interface>
ComPtr<Interface> CreateFilledChild(std::wstring_view xml) {
    ComPtr<Interface> child = CreateChild<Interface>();
    PutChildXml(child, xml);
    return child;
}
