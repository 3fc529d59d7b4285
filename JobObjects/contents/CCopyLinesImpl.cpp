#include "CCopyLinesImpl.h"

#include "JobObjects/frame/ChildRecord.h"
#include "common/xml/QxXmlWriter.h"

HRESULT CCopyLinesImpl::get_Xml(BSTR* pVal) {
    return GetValue(pVal, METHOD_SOURCE(get_Xml), [&] {
        QxXmlWriter writer(1024);
        m_lines.WriteXml(writer);
        return writer;
    });
}

HRESULT CCopyLinesImpl::put_Xml(BSTR newVal) {
    constexpr const wchar_t* source = METHOD_SOURCE(put_Xml);
    return RunMethod(source, [&] {
        if (!m_lines.put_Xml(BstrView(newVal)))
            ThrowInvalidXmlFragment(source);
    });
}

HRESULT CCopyLinesImpl::Item(LONG index, ICopyLine** copyLine) {
    if (!copyLine)
        return FailWithoutInfo(E_POINTER);
    *copyLine = nullptr;
    if (index < 0 || static_cast<std::size_t>(index) >= m_lines.Count())
        return FailWithoutInfo(E_INVALIDARG);
    return RunMethod(METHOD_SOURCE(Item), [&] {
        QxXmlWriter writer(512);
        m_lines.Line(static_cast<std::size_t>(index)).WriteXml(writer);
        *copyLine = CreateFilledChild<ICopyLine>(writer.Text()).Detach();
    });
}

HRESULT CCopyLinesImpl::Clear() {
    m_lines.Clear();
    return S_OK;
}
