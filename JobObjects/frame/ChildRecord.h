#pragma once

#include "common/Bstr.h"
#include "common/ErrorReporting.h"

// How a record makes its children and exchanges their XML: only through COM, so that a child may be any
// object that has the interface.

/// Looks the class up by ProgID, creates the object in any server context, puts it into the running state and
/// asks it for an interface. Returns the result of the step that fails.
HRESULT CreateByProgId(const wchar_t* progId, REFIID iid, void** object) noexcept;

// The child comes by value: it may call back into the record, or let others call, and be replaced meanwhile.

/// Throws a ComError with the child's own error information. E_POINTER if there is no child.
template<class Interface>
UniqueBstr GetChildXml(ComPtr<Interface> child, REFIID iid) {
    if (!child)
        throw ComError(E_POINTER);
    UniqueBstr xml;
    CallObject(child.Get(), iid, [&] { return child->get_Xml(xml.Put()); });
    return xml;
}

template<class Interface>
void PutChildXml(ComPtr<Interface> child, std::wstring_view xml, REFIID iid) {
    if (!child)
        throw ComError(E_POINTER);
    const UniqueBstr text(xml);
    CallObject(child.Get(), iid, [&] { return child->put_Xml(text.Get()); });
}

/// A new child with the given XML, for properties that hand out copies.
template<class Interface>
ComPtr<Interface> CreateFilledChild(const wchar_t* progId, std::wstring_view xml, REFIID iid) {
    ComPtr<Interface> child;
    ThrowIfFailed(CreateByProgId(progId, iid, child.PutVoid()));
    PutChildXml(child, xml, iid);
    return child;
}
