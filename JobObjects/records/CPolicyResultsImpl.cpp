#include "CPolicyResultsImpl.h"

#include "common/text/Numbers.h"
#include "common/text/Text.h"
#include "common/xml/QxXmlWriter.h"
#include "common/xml/RecordReading.h"
#include "common/xml/XmlNamespace.h"

#include <algorithm>

HRESULT CPolicyResultsImpl::get_Xml(BSTR* pVal) {
    return GetValue(pVal, METHOD_SOURCE(get_Xml), [&] {
        QxXmlWriter writer(512);
        WriteXml(writer);
        return writer;
    });
}

HRESULT CPolicyResultsImpl::put_Xml(BSTR newVal) {
    return RunMethod(METHOD_SOURCE(put_Xml), [&] {
        QxXmlParser parser;
        RecordReading::OpenRoot(parser, BstrView(newVal), L"PolicyResults");
        ReadXml(parser);
    });
}

HRESULT CPolicyResultsImpl::WriteInto(QxXmlWriter& writer) noexcept {
    return RunMethod(METHOD_SOURCE(get_Xml), [&] { WriteXml(writer); });
}

HRESULT CPolicyResultsImpl::ReadFrom(QxXmlParser& parser) noexcept {
    return RunMethod(METHOD_SOURCE(put_Xml), [&] { ReadXml(parser); });
}

HRESULT CPolicyResultsImpl::get_PolicyViolated(VARIANT_BOOL* pVal) {
    return GetField(pVal, !m_violations.empty());
}

HRESULT CPolicyResultsImpl::get_InformOnlyViolations(VARIANT_BOOL* pVal) {
    return GetField(pVal, InformOnly());
}

bool CPolicyResultsImpl::InformOnly() const noexcept {
    return !m_violations.empty() && std::all_of(m_violations.begin(), m_violations.end(),
                                                [](const auto& entry) { return entry.second == L"Inform"; });
}

HRESULT CPolicyResultsImpl::get_RuleViolations(BSTR* pVal) {
    return GetValue(pVal, METHOD_SOURCE(get_RuleViolations), [&] {
        std::wstring text;
        for (const auto& [triggerId, action] : m_violations) {
            if (!text.empty())
                text += L',';
            text += QxMisc::FormatInt32(triggerId);
        }
        return text;
    });
}

HRESULT CPolicyResultsImpl::ClearRuleViolations() {
    m_violations.clear();
    return S_OK;
}

HRESULT CPolicyResultsImpl::AddRuleViolation(LONG triggerId, BSTR ruleAction) {
    return RunMethod(METHOD_SOURCE(AddRuleViolation), [&] { AddViolation(triggerId, BstrView(ruleAction)); });
}

HRESULT CPolicyResultsImpl::RemoveRuleViolation(LONG triggerId) {
    m_violations.erase(triggerId);
    return S_OK;
}

HRESULT CPolicyResultsImpl::RuleViolated(LONG triggerId, VARIANT_BOOL* pVal) {
    return GetField(pVal, m_violations.contains(triggerId));
}

void CPolicyResultsImpl::AddViolation(std::int32_t triggerId, std::wstring_view action) {
    if (triggerId >= 0)
        m_violations.try_emplace(triggerId, action);
}

void CPolicyResultsImpl::WriteXml(QxXmlWriter& writer) const {
    writer.BeginRecord(L"PolicyResults", QX_XML_NAMESPACE_BASE L"/OutputManagement/Policy", m_version);
    writer.OpenStartTag(L"PolicyId");
    if (!m_hasRules)
        writer.Attribute(L"HasRules", L"false");
    writer.CloseWithData(L"PolicyId", QxMisc::FormatInt32(m_policyId));
    writer.Element(L"PolicyName", m_policyName);
    if (m_cancelled)
        writer.Element(L"Cancelled", true);
    if (!m_violations.empty()) {
        writer.OpenStartTag(L"RuleViolations");
        writer.CloseStartTag();
        for (const auto& [triggerId, action] : m_violations) {
            writer.OpenStartTag(L"Rule");
            writer.Attribute(L"TriggerId", QxMisc::FormatInt32(triggerId));
            writer.Attribute(L"Action", action);
            writer.CloseEmptyTag();
        }
        writer.EndTag(L"RuleViolations");
    }
    writer.EndTag(L"PolicyResults");
}

void CPolicyResultsImpl::ReadXml(QxXmlParser& parser) {
    m_version = RecordReading::ParseVersion(parser.GetRawAttribute(L"Version"));

    ChildReader children(parser);
    m_policyId = children.PositiveNumber(L"PolicyId");
    m_hasRules = true;
    // The current child is still PolicyId, if present.
    if (QxString hasRules; parser.FindChildAttribute(L"HasRules", hasRules))
        m_hasRules = QxMisc::ParseBool(hasRules);
    m_policyName = children.Text(L"PolicyName");
    m_cancelled = children.Flag(L"Cancelled");
    m_violations.clear();
    if (children.Find(L"RuleViolations"))
        ReadRuleViolations(parser);
}

void CPolicyResultsImpl::ReadRuleViolations(QxXmlParser& parser) {
    parser.IntoElement();
    while (parser.FindChildElement(L"Rule"))
        AddViolation(parser.GetChildAttributeNumber(L"TriggerId"), parser.GetChildAttribute(L"Action"));
    parser.OutOfElement();
}
