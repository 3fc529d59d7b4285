#pragma once

#include "ChildClass.h"
#include "HeldRecord.h"
#include "common/com/Bstr.h"
#include "common/com/ErrorReporting.h"

// Records create children by ProgID and exchange XML with them, so any object with the interface can be a
// child. Failures are thrown as ComErrors.

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

/// Appends the child's Xml. A failure carries the child's error information; E_POINTER without a child.
template<class Interface>
void WriteChild(QxXmlWriter& writer, ComPtr<Interface> child) {
    ThrowIfFailed(child ? S_OK : E_POINTER);
    if (HeldRecord<Interface>* const own = AsHeldRecord(child.Get())) {
        CallObject(child.Get(), ChildClass<Interface>::Iid, [&] { return own->WriteInto(writer); });
        return;
    }
    UniqueBstr xml;
    CallObject(child.Get(), ChildClass<Interface>::Iid, [&] { return child->get_Xml(xml.Put()); });
    writer.Raw(xml.View());
}

template<class Interface>
void PutChildXml(const ComPtr<Interface>& child, std::wstring_view xml) {
    const UniqueBstr text(xml);
    CallObject(child.Get(), ChildClass<Interface>::Iid, [&] { return child->put_Xml(text.Get()); });
}

/// Assigns the markup of the parser's current child to the child's Xml.
template<class Interface>
void ReadChild(QxXmlParser& parser, ComPtr<Interface> child) {
    ThrowIfFailed(child ? S_OK : E_POINTER);
    HeldRecord<Interface>* const own = AsHeldRecord(child.Get());
    if (!own) {
        PutChildXml(child, parser.GetChildSubDocument());
        return;
    }
    parser.IntoSubDocument();
    CallObject(child.Get(), ChildClass<Interface>::Iid, [&] { return own->ReadFrom(parser); });
    parser.OutOfSubDocument();
}

/// A new child filled from XML, for properties that return copies.
template<class Interface>
ComPtr<Interface> CreateFilledChild(std::wstring_view xml) {
    ComPtr<Interface> child = CreateChild<Interface>();
    PutChildXml(child, xml);
    return child;
}
