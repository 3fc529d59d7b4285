#pragma once

#include "ChildClass.h"
#include "Record.h"
#include "ServerModule.h"
#include "common/xml/QxXmlParser.h"
#include "common/xml/QxXmlWriter.h"

/// Base of the classes that jobs hold as children. A job reads and writes children of this library in its own
/// parser and writer: the results and reports are those of the property Xml, but no text is copied and parsed
/// again.
template<class Interface>
class HeldRecord : public Record<Interface, ChildClass<Interface>::Iid> {
public:
    /// Appends what get_Xml returns; reports failures as get_Xml does.
    virtual HRESULT WriteInto(QxXmlWriter& writer) noexcept = 0;
    /// Reads the parser's current element as put_Xml reads its text; reports failures as put_Xml does. On
    /// success the element is current again.
    virtual HRESULT ReadFrom(QxXmlParser& parser) noexcept = 0;
};

/// The object as this library's own, or null: for an object that a client implements, or a proxy. Looks at
/// nothing but the address of the virtual table, because any call could be seen from outside.
template<class Interface>
HeldRecord<Interface>* AsHeldRecord(Interface* object) noexcept {
    const void* const virtualTable = *reinterpret_cast<const void* const*>(object);
    return OwnModule().Contains(virtualTable) ? static_cast<HeldRecord<Interface>*>(object) : nullptr;
}
