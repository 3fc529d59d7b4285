#pragma once

#include "JobObjects/frame/Accessors.h"
#include "JobObjects.h"
#include "common/QxVersion.h"
#include "common/QxXmlWriter.h"
#include "common/RecordReading.h"

#include <span>

/// What copy, scan and fax jobs share: identity and user identification, the device, the local time, a
/// required JobContents child and an optional PolicyResults child, in one pattern of XML.
struct DeviceJob {
    /// What tells one of the three records from the others.
    struct Form {
        XmlName root;
        const wchar_t* xmlNamespace;
        QxVersion initialVersion;
        QxVersion lowestVersion; ///< a lower one is raised to it on reading
    };
    /// A field of one record only: a text or a number. They stand behind the shared fields.
    struct OwnField {
        XmlName name;
        QxString* text;
        std::int32_t* number;
    };

    /// Takes the current local time and creates an empty JobContents; throws a ComError if that fails.
    explicit DeviceJob(const Form& jobForm);

    QxXmlWriter Write(std::span<const OwnField> ownFields) const;
    /// Fields read before a failure keep their new values.
    void Read(std::wstring_view xml, std::span<const OwnField> ownFields);

    const Form& form;
    QxVersion version;
    QxString jobGuid;
    QxString customerCode;
    std::int32_t identifierType = 0;
    QxString identifierData;
    std::int32_t deviceId = 0;
    QxDateTime jobTimeLocal;
    ComPtr<IJobContents> jobContents;
    ComPtr<IPolicyResults> policyResults;

private:
    void ReadChildren(const QxXmlParser& parser, ChildReader& children);
};

/// The members that the three interfaces share.
#define DEVICE_JOB_PROPERTIES(Class, job)                                                                    \
    HRESULT STDMETHODCALLTYPE get_Xml(BSTR* pVal) override {                                                 \
        return GetValue(pVal, METHOD_SOURCE(Class, get_Xml), [&] { return job.Write(OwnFields()); });        \
    }                                                                                                        \
    HRESULT STDMETHODCALLTYPE put_Xml(BSTR newVal) override {                                                \
        return RunMethod(METHOD_SOURCE(Class, put_Xml), [&] { job.Read(BstrView(newVal), OwnFields()); });   \
    }                                                                                                        \
    TEXT_PROPERTY(Class, JobGuid, job.jobGuid)                                                               \
    TEXT_PROPERTY(Class, CustomerCode, job.customerCode)                                                     \
    NUMBER_PROPERTY(IdentifierType, job.identifierType)                                                      \
    TEXT_PROPERTY(Class, IdentifierData, job.identifierData)                                                 \
    NUMBER_PROPERTY(DeviceId, job.deviceId)                                                                  \
    DATE_PROPERTY(JobTimeLocal, job.jobTimeLocal)                                                            \
    REQUIRED_CHILD_PROPERTY(Class, JobContents, IJobContents, job.jobContents)                               \
    DERIVED_PROPERTY(Class, Version, BSTR, job.version.AsString())                                           \
    OPTIONAL_CHILD_PROPERTY(Class, PolicyResults, IPolicyResults, job.policyResults)
