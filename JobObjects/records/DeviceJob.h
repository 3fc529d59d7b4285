#pragma once

#include "JobObjects.h"
#include "JobObjects/frame/Accessors.h"
#include "JobObjects/frame/ElementTable.h"
#include "JobObjects/frame/Record.h"
#include "common/QxVersion.h"
#include "common/xml/QxXmlWriter.h"
#include "common/xml/XmlNamespace.h"

/// Differences between the XML forms of the three classes, besides their elements.
struct DeviceJobForm {
    XmlName root;
    const wchar_t* xmlNamespace;
    QxVersion initialVersion;
    QxVersion lowestVersion; ///< reading raises lower versions to it
};

/// Shared by copy, scan and fax jobs: identity, user, device, local time, a required JobContents and an
/// optional PolicyResults child.
class DeviceJob {
    static const Element<DeviceJob> SharedElements[];

protected:
    /// Takes the current local time and creates an empty JobContents; throws a ComError if that fails.
    explicit DeviceJob(const QxVersion& initialVersion);

    /// The start of the document: the root's start tag and the shared elements.
    QxXmlWriter BeginXml(const DeviceJobForm& form) const;
    /// The children and the root's end tag.
    void EndXml(QxXmlWriter& writer, const DeviceJobForm& form) const;

    /// Reads the version and the shared elements.
    ChildReader OpenXml(QxXmlParser& parser, std::wstring_view xml, const DeviceJobForm& form);
    void ReadChildren(QxXmlParser& parser, ChildReader& children);

    QxVersion m_version;
    QxString m_jobGuid;
    QxString m_customerCode;
    std::int32_t m_identifierType = 0;
    QxString m_identifierData;
    std::int32_t m_deviceId = 0;
    QxDateTime m_jobTimeLocal;
    ComPtr<IJobContents> m_jobContents;
    ComPtr<IPolicyResults> m_policyResults;
};

/// Base of the three COM classes. Job defines Form, and Elements, which follow the shared ones.
template<class Job, class Interface, const IID& interfaceId>
class DeviceJobRecord : public Record<Interface, interfaceId>, protected DeviceJob {
public:
    using Self = Job;

    HRESULT STDMETHODCALLTYPE get_Xml(BSTR* pVal) override {
        return GetValue(pVal, METHOD_SOURCE(get_Xml), [&] { return WriteXml(); });
    }
    HRESULT STDMETHODCALLTYPE put_Xml(BSTR newVal) override {
        return RunMethod(METHOD_SOURCE(put_Xml), [&] { ReadXml(BstrView(newVal)); });
    }
    TEXT_PROPERTY(get_JobGuid, put_JobGuid, m_jobGuid)
    TEXT_PROPERTY(get_CustomerCode, put_CustomerCode, m_customerCode)
    NUMBER_PROPERTY(get_IdentifierType, put_IdentifierType, m_identifierType)
    TEXT_PROPERTY(get_IdentifierData, put_IdentifierData, m_identifierData)
    NUMBER_PROPERTY(get_DeviceId, put_DeviceId, m_deviceId)
    DATE_PROPERTY(get_JobTimeLocal, put_JobTimeLocal, m_jobTimeLocal)
    REQUIRED_CHILD_PROPERTY(get_JobContents, put_JobContents, IJobContents, m_jobContents)
    DERIVED_PROPERTY(get_Version, BSTR, m_version.AsString())
    OPTIONAL_CHILD_PROPERTY(get_PolicyResults, put_PolicyResults, IPolicyResults, m_policyResults)

protected:
    DeviceJobRecord() : DeviceJob(Job::Form.initialVersion) {}

private:
    QxXmlWriter WriteXml() const {
        QxXmlWriter writer = BeginXml(Job::Form);
        WriteElements(writer, m_version, static_cast<const Job&>(*this), Job::Elements);
        EndXml(writer, Job::Form);
        return writer;
    }

    /// After a failure, fields already read keep their new values.
    void ReadXml(std::wstring_view xml) {
        QxXmlParser parser;
        ChildReader children = OpenXml(parser, xml, Job::Form);
        ReadElements(parser, children, m_version, static_cast<Job&>(*this), Job::Elements);
        ReadChildren(parser, children);
    }
};
