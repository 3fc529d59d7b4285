#pragma once

#include "ChildClass.h"
#include "common/com/Bstr.h"
#include "common/com/ErrorReporting.h"

// How a record creates its children and exchanges their XML: only through COM, so that a child can be any
// object with the interface. Failures are ComErrors.

/// Looks the class up by ProgID, creates the object in any server context, puts it into the running state and
/// asks it for the interface. Returns the result of the step that fails.
HRESULT CreateByProgId(const wchar_t* progId, REFIID iid, void** object) noexcept;

template<class Interface>
ComPtr<Interface> CreateChild() {
    ComPtr<Interface> child;
    ThrowIfFailed(CreateByProgId(ChildClass<Interface>::ProgId, ChildClass<Interface>::Iid, child.PutVoid()));
    return child;
}

// The child comes by value: it may call back into the record, or let others call, and be replaced meanwhile.

/// With the child's own error information if it fails; E_POINTER if there is no child.
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

/// A new child with the given XML, for properties that hand out copies.
template<class Interface>
ComPtr<Interface> CreateFilledChild(std::wstring_view xml) {
    ComPtr<Interface> child = CreateChild<Interface>();
    PutChildXml(child, xml);
    return child;
}
