#include "DeviceJob.h"

#include "JobObjects/frame/ChildRecord.h"
#include "common/Clock.h"

namespace {
constexpr QxVersion policyResultsVersion(4, 0);
}

DeviceJob::DeviceJob(const Form& jobForm)
    : form(jobForm), version(jobForm.initialVersion), jobTimeLocal(Clock::LocalNow()) {
    ThrowIfFailed(CreateByProgId(L"Corvane.JobContents", IID_IJobContents, jobContents.PutVoid()));
}

QxXmlWriter DeviceJob::Write(std::span<const OwnField> ownFields) const {
    QxXmlWriter writer(2048);
    writer.OpenStartTag(form.root);
    writer.Attribute(L"xmlns", form.xmlNamespace);
    writer.Attribute(L"Version", version.AsString());
    writer.CloseStartTag();
    writer.Element(L"JobGuid", jobGuid);
    writer.Element(L"CustomerCode", customerCode);
    writer.Element(L"IdentifierType", identifierType);
    writer.Element(L"IdentifierData", identifierData);
    writer.Element(L"DeviceId", deviceId);
    writer.Element(L"JobTimeLocal", jobTimeLocal.Format());
    for (const OwnField& field : ownFields) {
        if (field.text)
            writer.Element(field.name, *field.text);
        else
            writer.Element(field.name, *field.number);
    }
    writer.Raw(GetChildXml(jobContents, IID_IJobContents).View());
    if (version >= policyResultsVersion && policyResults)
        writer.Raw(GetChildXml(policyResults, IID_IPolicyResults).View());
    writer.EndTag(form.root);
    return writer;
}

void DeviceJob::Read(std::wstring_view xml, std::span<const OwnField> ownFields) {
    QxXmlParser parser;
    RecordReading::OpenRoot(parser, xml, form.root);
    version = std::max(RecordReading::ParseVersion(parser.GetRawAttribute(L"Version")), form.lowestVersion);
    ChildReader children(parser);
    jobGuid = children.Text(L"JobGuid");
    customerCode = children.Text(L"CustomerCode");
    identifierType = children.PositiveNumber(L"IdentifierType");
    identifierData = children.Text(L"IdentifierData");
    deviceId = children.PositiveNumber(L"DeviceId");
    jobTimeLocal = children.DateTime(L"JobTimeLocal");
    for (const OwnField& field : ownFields) {
        if (field.text)
            *field.text = children.Text(field.name);
        else
            *field.number = children.PositiveNumber(field.name);
    }
    ReadChildren(parser, children);
}

void DeviceJob::ReadChildren(const QxXmlParser& parser, ChildReader& children) {
    if (!children.Find(L"JobContents"))
        throw QxException(L"JobContents element is missing.");
    PutChildXml(jobContents, parser.GetChildSubDocument(), IID_IJobContents);

    if (version < policyResultsVersion || !children.Find(L"PolicyResults")) {
        policyResults = {};
        return;
    }
    if (!policyResults)
        ThrowIfFailed(CreateByProgId(L"Corvane.PolicyResults", IID_IPolicyResults, policyResults.PutVoid()));
    PutChildXml(policyResults, parser.GetChildSubDocument(), IID_IPolicyResults);
}
