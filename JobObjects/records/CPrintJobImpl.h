#pragma once

#include "JobObjects/frame/Accessors.h"
#include "JobObjects/frame/ElementTable.h"
#include "JobObjects/frame/Record.h"
#include "common/QxVersion.h"
#include "common/xml/RecordReading.h"
#include "common/xml/QxXmlWriter.h"

/// A print job: user, times, origin, size, log target and children. A child may be any object with the
/// child's interface.
class CPrintJobImpl : public Record<IPrintJob, IID_IPrintJob> {
public:
    using Self = CPrintJobImpl;
    static constexpr NameLiteral ClassName{L"CPrintJobImpl"};

    /// Stamps the current times and creates an empty JobContents; throws a ComError if that fails.
    CPrintJobImpl();

    HRESULT STDMETHODCALLTYPE get_Xml(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE put_Xml(BSTR newVal) override;
    HRESULT STDMETHODCALLTYPE get_PageCounterInfoXml(BSTR* pVal) override;
    DERIVED_PROPERTY(get_Version, BSTR, m_version.AsString())

    TEXT_PROPERTY(get_JobGuid, put_JobGuid, m_jobGuid)
    TEXT_PROPERTY(get_CustomerCode, put_CustomerCode, m_customerCode)
    TEXT_PROPERTY(get_UserName, put_UserName, m_userName)
    TEXT_PROPERTY(get_UserDomainName, put_UserDomainName, m_userDomainName)
    FLAG_PROPERTY(get_FromSystemUser, put_FromSystemUser, m_fromSystemUser)
    TEXT_PROPERTY(get_DesktopUserName, put_DesktopUserName, m_desktopUserName)
    TEXT_PROPERTY(get_DesktopUserDomainName, put_DesktopUserDomainName, m_desktopUserDomainName)
    DATE_PROPERTY(get_JobTimeLocal, put_JobTimeLocal, m_jobTimeLocal)
    NUMBER_PROPERTY(get_JobTimeLocalMsec, put_JobTimeLocalMsec, m_jobTimeLocalMsec)
    DATE_PROPERTY(get_JobTimeUtc, put_JobTimeUtc, m_jobTimeUtc)
    NUMBER_PROPERTY(get_JobSize, put_JobSize, m_jobSize)
    TEXT_PROPERTY(get_JobName, put_JobName, m_jobName)
    TEXT_PROPERTY(get_JobFileName, put_JobFileName, m_jobFileName)
    TEXT_PROPERTY(get_JobDataType, put_JobDataType, m_jobDataType)
    TEXT_PROPERTY(get_MachineName, put_MachineName, m_machineName)
    TEXT_PROPERTY(get_ApplicationName, put_ApplicationName, m_applicationName)
    TEXT_PROPERTY(get_ApplicationDescription, put_ApplicationDescription, m_applicationDescription)
    FLAG_PROPERTY(get_VpnConnected, put_VpnConnected, m_vpnConnected)
    NUMBER_PROPERTY(get_TonerCoverage, put_TonerCoverage, m_tonerCoverage)
    NUMBER_PROPERTY(get_TonerSaving, put_TonerSaving, m_tonerSaving)
    NUMBER_PROPERTY(get_DataSource, put_DataSource, m_dataSource)
    NUMBER_PROPERTY(get_JobContentsSource, put_JobContentsSource, m_jobContentsSource)
    NUMBER_PROPERTY(get_JobContentsDiscardCount, put_JobContentsDiscardCount, m_jobContentsDiscardCount)
    TEXT_PROPERTY(get_PageCounterErrorMessage, put_PageCounterErrorMessage, m_pageCounterErrorMessage)
    TEXT_PROPERTY(get_PageCounterResult, put_PageCounterResult, m_pageCounterResult)

    REQUIRED_CHILD_PROPERTY(get_JobContents, put_JobContents, IJobContents, m_jobContents)
    OPTIONAL_CHILD_PROPERTY(get_PageCounterJobContents, put_PageCounterJobContents, IJobContents,
                            m_pageCounterJobContents)
    OPTIONAL_CHILD_PROPERTY(get_WindowsPrintInfo, put_WindowsPrintInfo, IWindowsPrintInfo, m_windowsPrintInfo)
    OPTIONAL_CHILD_PROPERTY(get_PolicyResults, put_PolicyResults, IPolicyResults, m_policyResults)

    // The log target: one value, accessible through the property of its type (CPrintJobLogTarget.cpp).

    HRESULT STDMETHODCALLTYPE get_LogTargetType(LONG* pVal) override;
    HRESULT STDMETHODCALLTYPE ResetLogTarget() override;
    HRESULT STDMETHODCALLTYPE get_LogicalPrinterGuid(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE put_LogicalPrinterGuid(BSTR newVal) override;
    HRESULT STDMETHODCALLTYPE get_DeviceId(LONG* pVal) override;
    HRESULT STDMETHODCALLTYPE put_DeviceId(LONG newVal) override;
    HRESULT STDMETHODCALLTYPE get_DeviceAddress(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE put_DeviceAddress(BSTR newVal) override;

private:
    /// First version with the log target's type, ApplicationName and VpnConnected.
    static constexpr QxVersion LogTargetVersion{4, 2};

    void SetLogTarget(std::int32_t type, QxString value) noexcept;
    HRESULT CheckLogTargetTypeSupportsProperty(std::int32_t requiredType,
                                               std::wstring_view propertyName) const noexcept;

    // XML form (CPrintJobXml.cpp).

    static const Element<Self> Elements[];

    QxXmlWriter WriteXml();
    void WriteFromSystemUser(QxXmlWriter& writer) const;
    void WriteTimes(QxXmlWriter& writer) const;
    void WriteLogTarget(QxXmlWriter& writer) const;
    void WriteToner(QxXmlWriter& writer) const;
    void WriteChildren(QxXmlWriter& writer) const;
    void WritePageCounterInfo(QxXmlWriter& writer) const;

    void ReadXml(std::wstring_view xml);
    void ReadVersion(const QxXmlParser& parser);
    void PassFromSystemUser(QxXmlParser& parser, ChildReader& children);
    void ReadFromSystemUser(QxXmlParser& parser, ChildReader& children);
    void ReadTimes(QxXmlParser& parser, ChildReader& children);
    void ReadLogTarget(QxXmlParser& parser, ChildReader& children);
    void ReadToner(QxXmlParser& parser, ChildReader& children);
    void ReadChildren(QxXmlParser& parser, ChildReader& children);
    void ReadJobContents(QxXmlParser& parser, ChildReader& children);
    void ReadPageCounterInfo(QxXmlParser& parser, ChildReader& children);

    /// Fills in the current time where none was set.
    void StampTimes() noexcept;

    QxVersion m_version;
    QxString m_jobGuid;
    QxString m_customerCode;
    QxString m_userName;
    QxString m_userDomainName;
    bool m_fromSystemUser = false;
    QxString m_desktopUserName;
    QxString m_desktopUserDomainName;
    QxDateTime m_jobTimeLocal;
    std::int32_t m_jobTimeLocalMsec = 0;
    QxDateTime m_jobTimeUtc;
    std::int32_t m_jobSize = 0;
    QxString m_jobName;
    QxString m_jobFileName;
    QxString m_jobDataType;
    QxString m_machineName;
    QxString m_applicationName;
    QxString m_applicationDescription;
    QxString m_logTarget;
    std::int32_t m_logTargetType = 0;
    bool m_vpnConnected = false;
    std::int32_t m_tonerCoverage = -1; // -1: unknown
    std::int32_t m_tonerSaving = -1;
    std::int32_t m_dataSource = 0;
    std::int32_t m_jobContentsSource = 0;
    std::int32_t m_jobContentsDiscardCount = 0;
    ComPtr<IJobContents> m_jobContents; // null only after its creation failed during a read
    ComPtr<IJobContents> m_pageCounterJobContents;
    QxString m_pageCounterErrorMessage;
    QxString m_pageCounterResult;
    ComPtr<IWindowsPrintInfo> m_windowsPrintInfo;
    ComPtr<IPolicyResults> m_policyResults;
};
