#include "DeviceJob.h"

#include "JobObjects/frame/ChildRecord.h"
#include "common/Clock.h"
#include "common/RecordReading.h"

using namespace RecordReading;

namespace {
constexpr QxVersion policyResultsVersion(4, 0);
}

DeviceJob::DeviceJob(const Form& jobForm)
    : form(jobForm), version(jobForm.initialVersion), jobTimeLocal(Clock::LocalNow()) {
    ThrowIfFailed(CreateByProgId(L"Corvane.JobContents", IID_IJobContents, jobContents.PutVoid()));
}

std::wstring DeviceJob::Write(std::span<const OwnField> ownFields) const {
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
    return writer.Take();
}

void DeviceJob::Read(std::wstring_view xml, std::span<const OwnField> ownFields) {
    QxXmlParser parser;
    OpenRoot(parser, xml, form.root);
    version = std::max(ParseVersion(parser.GetAttribute(L"Version")), form.lowestVersion);
    jobGuid = Text(parser, L"JobGuid");
    customerCode = Text(parser, L"CustomerCode");
    identifierType = PositiveNumber(parser, L"IdentifierType");
    identifierData = Text(parser, L"IdentifierData");
    deviceId = PositiveNumber(parser, L"DeviceId");
    jobTimeLocal = DateTime(parser, L"JobTimeLocal");
    for (const OwnField& field : ownFields) {
        if (field.text)
            *field.text = Text(parser, field.name);
        else
            *field.number = PositiveNumber(parser, field.name);
    }
    ReadChildren(parser);
}

void DeviceJob::ReadChildren(QxXmlParser& parser) {
    if (!parser.FindChildElement(L"JobContents", true))
        throw QxException(L"JobContents element is missing.");
    PutChildXml(jobContents, parser.GetChildSubDocument(), IID_IJobContents);

    if (version < policyResultsVersion || !parser.FindChildElement(L"PolicyResults", true)) {
        policyResults = {};
        return;
    }
    if (!policyResults)
        ThrowIfFailed(CreateByProgId(L"Corvane.PolicyResults", IID_IPolicyResults, policyResults.PutVoid()));
    PutChildXml(policyResults, parser.GetChildSubDocument(), IID_IPolicyResults);
}
