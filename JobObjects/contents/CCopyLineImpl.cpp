#include "CCopyLineImpl.h"

#include "common/xml/QxXmlWriter.h"

// The two accessors report under each other's names: what components match in the log must stay as it is.

HRESULT CCopyLineImpl::get_Xml(BSTR* pVal) {
    return GetValue(pVal, METHOD_SOURCE(put_Xml), [&] {
        QxXmlWriter writer(512);
        m_line.WriteXml(writer);
        return writer;
    });
}

HRESULT CCopyLineImpl::put_Xml(BSTR newVal) {
    return RunMethod(METHOD_SOURCE(get_Xml), [&] {
        if (!m_line.put_Xml(BstrView(newVal)))
            ThrowInvalidXmlFragment(METHOD_SOURCE(put_Xml));
    });
}
