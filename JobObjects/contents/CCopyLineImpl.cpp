#include "CCopyLineImpl.h"

#include "common/xml/QxXmlWriter.h"

// The accessors report under each other's names on purpose: log readers match these texts.

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
