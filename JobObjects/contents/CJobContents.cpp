#include "CJobContents.h"

#include "JobAttributeCatalogue.h"

#include "common/text/Text.h"
#include "common/xml/QxXmlParser.h"
#include "common/xml/QxXmlWriter.h"
#include "common/xml/RecordReading.h"
#include "common/xml/XmlNamespace.h"
#include "common/log/QxLogger.h"

CJobContents::CJobContents() : m_jobCopyLines(std::make_shared<CCopyLines>()) {
}

std::int32_t CJobContents::DBPdl() const {
    return static_cast<std::int32_t>(TheCatalogue().PdlDbIdFromName(m_jobPdl));
}

std::int32_t CJobContents::DBFinishing() const {
    return static_cast<std::int32_t>(TheCatalogue().FinishingMaskFromNames(m_jobFinishing));
}

bool CJobContents::IsPdlEMF() const noexcept {
    return QxMisc::Contains(m_jobPdl, L"EMF");
}

bool CJobContents::put_Xml(std::wstring_view xml) {
    QxXmlParser parser;
    parser.SetDocument(xml);
    return parser.FindElement(L"JobContents", true) ? ReadXml(parser) : Refuse();
}

bool CJobContents::ReadXml(QxXmlParser& parser) {
    const std::wstring_view version = parser.GetRawAttribute(L"Version");
    m_version = version.empty() ? QxVersion(4, 0) : QxVersion(version);
    ChildReader children(parser);
    const bool hasCopyLines = ReadCopyLines(parser, children);
    SetJobOriginals(children.Number(L"JobOriginals"));
    SetJobCopies(children.Number(L"JobCopies"));
    SetJobPdl(children.Text(L"JobPdl"));
    SetJobFinishing(children.Text(L"JobFinishing"));
    return hasCopyLines || Refuse();
}

bool CJobContents::Refuse() {
    LogError(L"[CJobContents::put_Xml] Invalid Xml fragment");
    return false;
}

bool CJobContents::ReadCopyLines(QxXmlParser& parser, ChildReader& children) {
    if (!children.Find(L"JobCopyLines"))
        return m_jobCopyLines->put_Xml({}); // empties the lines and logs
    parser.IntoElement();
    m_jobCopyLines->ReadXml(parser);
    parser.OutOfElement();
    return true;
}

void CJobContents::WriteXml(QxXmlWriter& writer) const {
    writer.BeginRecord(L"JobContents", QX_XML_NAMESPACE_BASE L"/OutputManagement/JobContents", m_version);
    m_jobCopyLines->WriteXml(writer);
    writer.Element(L"JobOriginals", m_jobOriginals);
    writer.Element(L"JobCopies", m_jobCopies);
    writer.Element(L"JobPdl", m_jobPdl.view());
    writer.Element(L"JobFinishing", m_jobFinishing.view());
    writer.EndTag(L"JobContents");
}
