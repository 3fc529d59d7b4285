#include "CPrintJobImpl.h"

#include "JobObjects/frame/ChildRecord.h"
#include "common/Clock.h"

CPrintJobImpl::CPrintJobImpl()
    : m_version(7, 26), m_jobTimeLocal(Clock::LocalNow()), m_jobTimeUtc(Clock::UtcNow()) {
    m_jobContents = CreateChild<IJobContents>();
}

HRESULT CPrintJobImpl::get_Xml(BSTR* pVal) {
    return GetValue(pVal, METHOD_SOURCE(get_Xml), [&] { return WriteXml(); });
}

HRESULT CPrintJobImpl::put_Xml(BSTR newVal) {
    return RunMethod(METHOD_SOURCE(put_Xml), [&] { ReadXml(BstrView(newVal)); });
}

HRESULT CPrintJobImpl::get_PageCounterInfoXml(BSTR* pVal) {
    return GetValue(pVal, METHOD_SOURCE(get_PageCounterInfoXml), [&] {
        QxXmlWriter writer;
        WritePageCounterInfo(writer);
        return writer;
    });
}

void CPrintJobImpl::StampTimes() noexcept {
    if (m_jobTimeLocal.IsUnset())
        m_jobTimeLocal = Clock::LocalNow();
    if (m_jobTimeUtc.IsUnset())
        m_jobTimeUtc = Clock::UtcNow();
}
