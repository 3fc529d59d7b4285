#pragma once

#include "JobObjects/frame/Accessors.h"
#include "JobObjects/frame/HeldRecord.h"
#include "common/QxVersion.h"
#include "common/xml/QxXmlParser.h"

#include <map>

/// The result of applying a print policy to a job: the violated rules.
class CPolicyResultsImpl : public HeldRecord<IPolicyResults> {
public:
    using Self = CPolicyResultsImpl;
    static constexpr NameLiteral ClassName{L"CPolicyResultsImpl"};

    HRESULT STDMETHODCALLTYPE get_Xml(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE put_Xml(BSTR newVal) override;
    DERIVED_PROPERTY(get_Version, BSTR, m_version.AsString())
    NUMBER_PROPERTY(get_PolicyId, put_PolicyId, m_policyId)
    FLAG_PROPERTY(get_HasRules, put_HasRules, m_hasRules)
    FLAG_PROPERTY(get_Cancelled, put_Cancelled, m_cancelled)
    HRESULT STDMETHODCALLTYPE get_PolicyViolated(VARIANT_BOOL* pVal) override;
    HRESULT STDMETHODCALLTYPE get_InformOnlyViolations(VARIANT_BOOL* pVal) override;
    HRESULT STDMETHODCALLTYPE get_RuleViolations(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE ClearRuleViolations() override;
    HRESULT STDMETHODCALLTYPE AddRuleViolation(LONG triggerId, BSTR ruleAction) override;
    HRESULT STDMETHODCALLTYPE RemoveRuleViolation(LONG triggerId) override;
    HRESULT STDMETHODCALLTYPE RuleViolated(LONG triggerId, VARIANT_BOOL* pVal) override;
    TEXT_PROPERTY(get_PolicyName, put_PolicyName, m_policyName)

    HRESULT WriteInto(QxXmlWriter& writer) noexcept override;
    HRESULT ReadFrom(QxXmlParser& parser) noexcept override;

private:
    void WriteXml(QxXmlWriter& writer) const;
    void ReadXml(QxXmlParser& parser);
    void ReadRuleViolations(QxXmlParser& parser);
    bool InformOnly() const noexcept;
    /// Ignores negative identifiers; of duplicates the first action counts.
    void AddViolation(std::int32_t triggerId, std::wstring_view action);

    bool m_cancelled = false;
    bool m_hasRules = true;
    std::int32_t m_policyId = 0;
    QxString m_policyName;
    std::map<std::int32_t, QxString> m_violations; // trigger identifier to action
    QxVersion m_version{4, 0};
};
