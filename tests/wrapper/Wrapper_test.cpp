#include "tests/support/ForeignChild.h"
#include "tests/support/Members.h"

#include "JobObjects.hpp"
#include "WrappedMembers.h"

// Every member of the C++ classes, against late-bound calls by the member's name. WrappedMembers.h lists them
// from the interface definition, so a new member is tested, or fails to link, without a change here.

namespace {

Variant LateBoundValue(IDispatch* object, const wchar_t* name) {
    Variant value;
    REQUIRE_HR(InvokeByName(object, name, DISPATCH_PROPERTYGET, {}, &value.value), S_OK);
    return value;
}

// --- Values as comparable text ---

std::string ShowValue(const std::wstring& value) {
    return Show(Variant::Text(value).value);
}
std::string ShowValue(LONG value) {
    return Show(Variant::Number(value).value);
}
std::string ShowValue(bool value) {
    return Show(Variant::Flag(value ? VARIANT_TRUE : VARIANT_FALSE).value);
}
std::string ShowValue(const JobObjects::CopyLines& value) {
    return Show(Variant::Object(value.Get()).value);
}

// --- Properties that are read and written ---

/// Puts through the class and gets late bound, and the other way round.
template<class Class, class Value, class Getter, class Putter>
void CheckRoundTrip(const wchar_t* name, Getter get, Putter put, const Value& first,
                    const Variant& firstShown, const Value& second, const Variant& secondShown) {
    INFO(Narrow(name));
    const auto object = Class::Create();
    put(object, first);
    CHECK(Show(LateBoundValue(object.Get(), name).value) == Show(firstShown.value));
    CHECK(get(object) == first);
    REQUIRE_HR(InvokeByName(object.Get(), name, DISPATCH_PROPERTYPUT, {secondShown.value}), S_OK);
    CHECK(get(object) == second);
}

/// A different number in each call.
LONG NextNumber() {
    static LONG number = 1000;
    return ++number;
}

#define ACCESSORS(Class, Name)                                                                               \
    L"" #Name, [](const JobObjects::Class& object) { return object.Name(); },                                \
        [](const JobObjects::Class& object, const auto& value) { object.Name(value); }

/// Well-formed, because some properties hold XML; \U0001F5A8 has two code units.
std::wstring TextFor(const wchar_t* name) {
    return std::wstring(L"<Value>\u00FC \U0001F5A8 ") + name + L"</Value>";
}

#define CHECK_TEXT_PROPERTY(Class, Name)                                                                     \
    CheckRoundTrip<JobObjects::Class, std::wstring>(ACCESSORS(Class, Name), TextFor(L"" #Name),              \
                                                    Variant::Text(TextFor(L"" #Name)), L"<Other/>",          \
                                                    Variant::Text(L"<Other/>"));

template<class Class, class Getter, class Putter>
void CheckNumber(const wchar_t* name, Getter get, Putter put) {
    const LONG first = NextNumber(), second = NextNumber();
    CheckRoundTrip<Class>(name, get, put, first, Variant::Number(first), second, Variant::Number(second));
}
#define CHECK_NUMBER_PROPERTY(Class, Name) CheckNumber<JobObjects::Class>(ACCESSORS(Class, Name));

template<class Class, class Getter, class Putter>
void CheckDate(const wchar_t* name, Getter get, Putter put) {
    const DATE first = NextNumber() + 0.25, second = NextNumber() + 0.5;
    CheckRoundTrip<Class>(name, get, put, first, Variant::Date(first), second, Variant::Date(second));
}
#define CHECK_DATE_PROPERTY(Class, Name) CheckDate<JobObjects::Class>(ACCESSORS(Class, Name));

template<class Class, class Getter, class Putter>
void CheckFlag(const wchar_t* name, Getter get, Putter put) {
    const Variant yes = Variant::Flag(VARIANT_TRUE), no = Variant::Flag(VARIANT_FALSE);
    CheckRoundTrip<Class>(name, get, put, true, yes, false, no);
    CheckRoundTrip<Class>(name, get, put, false, no, true, yes);
}
#define CHECK_FLAG_PROPERTY(Class, Name) CheckFlag<JobObjects::Class>(ACCESSORS(Class, Name));

// --- Children ---

ComPtr<IUnknown> IdentityOf(IUnknown* object) {
    REQUIRE(object != nullptr);
    ComPtr<IUnknown> identity;
    REQUIRE_HR(object->QueryInterface(IID_IUnknown, identity.PutVoid()), S_OK);
    return identity;
}

template<class Class, class Child, class Getter, class Putter>
void CheckChild(const wchar_t* name, Getter get, Putter put) {
    INFO(Narrow(name));
    const auto object = Class::Create();
    const auto first = Child::Create();
    put(object, first);
    const Variant held = LateBoundValue(object.Get(), name);
    REQUIRE(held.value.vt == VT_DISPATCH);
    CHECK(IdentityOf(held.value.pdispVal).Get() == IdentityOf(first.Get()).Get());

    const auto second = Child::Create();
    REQUIRE_HR(InvokeByName(object.Get(), name, DISPATCH_PROPERTYPUT, {Variant::Object(second.Get()).value}),
               S_OK);
    CHECK(IdentityOf(get(object).Get()).Get() == IdentityOf(second.Get()).Get());
}
#define CHECK_CHILD_PROPERTY(Class, Name, Child)                                                             \
    CheckChild<JobObjects::Class, JobObjects::Child>(ACCESSORS(Class, Name));

// --- Read-only properties ---

// Give an object values that set its read-only properties.
JobObjects::JobContents Filled(const JobObjects::JobContents& contents) {
    contents.GenerateContentsFromPageCounterInfo(L"A3,Duplex,Color,EMF,Staple", 3, 2, 6, 4);
    contents.GenerateCopyLineFromPageCounterInfo(L"A4,Duplex", 5, 2, 1, 4);
    return contents;
}
JobObjects::CopyLines Filled(const JobObjects::CopyLines&) {
    return Filled(JobObjects::JobContents::Create()).JobCopyLines();
}
JobObjects::CopyLine Filled(const JobObjects::CopyLine&) {
    return Filled(JobObjects::CopyLines()).Item(0);
}
JobObjects::WindowsPrintInfo Filled(const JobObjects::WindowsPrintInfo& info) {
    info.DevModeFields(DM_COPIES | DM_DUPLEX | DM_COLOR);
    info.DevModeCopies(3);
    info.DevModeDuplex(DMDUP_VERTICAL);
    info.DevModeColor(DMCOLOR_COLOR);
    info.AttributeInfoPageOrderFlags(2);
    return info;
}
JobObjects::PolicyResults Filled(const JobObjects::PolicyResults& results) {
    results.AddRuleViolation(7, L"Inform");
    return results;
}
JobObjects::PrintJob Filled(const JobObjects::PrintJob& job) {
    job.Xml(L"<PrintJob Version=\"6.0\"/>");
    job.DeviceAddress(L"10.1.2.3");
    job.PageCounterJobContents(Filled(JobObjects::JobContents::Create()));
    return job;
}
JobObjects::LogicalPrinter Filled(const JobObjects::LogicalPrinter& printer) {
    printer.Xml(L"<LogicalPrinter Version=\"6.0\"/>");
    printer.DriverName(L"Universal Driver");
    return printer;
}
constexpr const wchar_t* Contents = L"><JobContents><JobCopyLines/></JobContents></";
template<class Job>
Job FilledJob(const Job& job, const std::wstring& root) {
    job.Xml(L"<" + root + L" Version=\"3.9\"" + Contents + root + L">");
    return job;
}
JobObjects::CopyJob Filled(const JobObjects::CopyJob& job) {
    return FilledJob(job, L"CopyJob");
}
JobObjects::ScanJob Filled(const JobObjects::ScanJob& job) {
    return FilledJob(job, L"ScanJob");
}

// These have one form only: their version never changes.
template<class Class>
constexpr bool HasOneVersion =
    std::is_same_v<Class, JobObjects::JobContents> || std::is_same_v<Class, JobObjects::PolicyResults> ||
    std::is_same_v<Class, JobObjects::FaxJob>;

JobObjects::FaxJob Filled(const JobObjects::FaxJob& job) {
    return job;
}

template<class Class, class Getter>
void CheckReadOnly(const wchar_t* name, Getter get) {
    INFO(Narrow(name));
    const auto empty = Class::Create();
    const std::string initial = ShowValue(get(empty));
    CHECK(initial == Show(LateBoundValue(empty.Get(), name).value));
    const Class filled = Filled(empty);
    const std::string value = ShowValue(get(filled));
    CHECK(value == Show(LateBoundValue(filled.Get(), name).value));
    const bool isFixed = std::wstring_view(name) == L"Version" && HasOneVersion<Class>;
    if (!isFixed && value != "object")
        CHECK(value != initial);
}
#define CHECK_READ_ONLY_PROPERTY(Class, Name)                                                                \
    CheckReadOnly<JobObjects::Class>(L"" #Name,                                                              \
                                     [](const JobObjects::Class& object) { return object.Name(); });

// --- Xml ---

template<class Class>
void CheckXml() {
    const auto sent = Class::Create();
    const auto filled = Filled(sent);
    const std::wstring xml = filled.Xml();
    CHECK(ShowValue(xml) == Show(LateBoundValue(filled.Get(), L"Xml").value));
    const auto received = Class::Create();
    received.Xml(xml);
    CHECK_TEXT(received.Xml(), xml);
}

// --- Failures ---

template<class Call>
JobObjects::Error ErrorOf(Call call) {
    try {
        call();
    } catch (const JobObjects::Error& error) {
        return error;
    }
    FAIL("no error");
    return {S_OK, L""};
}

void LeaveErrorInfo(const wchar_t* description) {
    ForeignChild other(JobObjects::CopyLine::InterfaceId);
    other.ExplainFailures(description);
    REQUIRE_HR(SetErrorInfo(0, other.explanation.Get()), S_OK);
}

} // namespace

// One function for each method; WrappedMembers.h lists them.
namespace methods {

void PrintJob_ResetLogTarget() {
    const auto job = JobObjects::PrintJob::Create();
    job.DeviceAddress(L"10.1.2.3");
    CHECK(job.LogTargetType() == 3);
    job.ResetLogTarget();
    CHECK(job.LogTargetType() == 0);
}

void CopyLines_Item() {
    const auto lines = Filled(JobObjects::CopyLines());
    REQUIRE(lines.Count() == 2);
    CHECK_TEXT(lines.Item(0).PaperSize(), L"A3");
    CHECK_TEXT(lines.Item(1).PaperSize(), L"A4");
    CHECK_HR(ErrorOf([&] { lines.Item(2); }).Result(), E_INVALIDARG);
}

void CopyLines_Clear() {
    const auto lines = Filled(JobObjects::CopyLines());
    lines.Clear();
    CHECK(lines.Count() == 0);
}

void JobContents_GenerateContentsFromPageCounterInfo() {
    const auto contents = JobObjects::JobContents::Create();
    contents.GenerateContentsFromPageCounterInfo(L"A3,Duplex,Color,PCL6,Staple", 32, 10, 320, 80);
    CHECK_TEXT(contents.DBCopyLines(), L"4,0,320,80,10");
    CHECK(contents.JobOriginals() == 32);
    CHECK(contents.JobCopies() == 10);
}

void JobContents_GenerateGeneralContentsFromPageCounterInfo() {
    const auto contents = JobObjects::JobContents::Create();
    CHECK_TEXT(contents.GenerateGeneralContentsFromPageCounterInfo(L"A4,Duplex,Color", 3, 2, true),
               L"Duplex");
    CHECK_TEXT(contents.GenerateGeneralContentsFromPageCounterInfo(L"A4,Duplex,Color", 3, 2, false),
               L"Duplex,Color");
    CHECK(contents.JobOriginals() == 3);
    CHECK(contents.JobCopies() == 2);
}

void JobContents_GenerateCopyLineFromPageCounterInfo() {
    const auto contents = JobObjects::JobContents::Create();
    contents.GenerateCopyLineFromPageCounterInfo(L"Letter", 5, 4, 3, 2);
    const auto line = contents.JobCopyLines().Item(0);
    CHECK_TEXT(line.PaperSize(), L"Letter");
    CHECK(line.PagesBW() == 5);
    CHECK(line.PagesColor() == 4);
    CHECK(line.PagesBlank() == 3);
    CHECK(line.Sheets() == 2);
}

void JobContents_GenerateContentsFromDBInfo() {
    const auto contents = JobObjects::JobContents::Create();
    contents.GenerateContentsFromDBInfo(L"4,0,320,80,10", 32, 10, 5, 1);
    CHECK_TEXT(contents.JobCopyLines().Item(0).PaperSize(), L"A3");
    CHECK(contents.JobOriginals() == 32);
    CHECK(contents.JobCopies() == 10);
    CHECK(contents.DBPdl() == 5);
    CHECK(contents.DBFinishing() == 1);
}

void JobContents_MatchAttributes() {
    const auto contents = JobObjects::JobContents::Create();
    std::wstring paper, dimensions, language, finishing, attributes;
    bool isColor = false;
    CHECK_TEXT(contents.MatchAttributes(L"A3,Duplex,Color,PCL6,Staple,Unknown", paper, dimensions, language,
                                        finishing, attributes, isColor),
               L"Unknown");
    CHECK_TEXT(paper, L"A3");
    CHECK_TEXT(dimensions, L"2970,4200");
    CHECK_TEXT(language, L"PCL6");
    CHECK_TEXT(finishing, L"Staple");
    CHECK_TEXT(attributes, L"Duplex,B&W"); // the colour words have no effect on the attributes
    CHECK(isColor);
}

void JobContents_DoAttributesMatch() {
    const auto contents = JobObjects::JobContents::Create();
    std::wstring unmatched = L"before";
    CHECK(contents.DoAttributesMatch(L"A3,Duplex", unmatched));
    CHECK_TEXT(unmatched, L"");
    CHECK_FALSE(contents.DoAttributesMatch(L"A3,Unknown", unmatched));
    CHECK_TEXT(unmatched, L"Unknown");
}

void PolicyResults_AddRuleViolation() {
    const auto results = JobObjects::PolicyResults::Create();
    results.AddRuleViolation(7, L"Inform");
    CHECK_TEXT(results.RuleViolations(), L"7");
    CHECK(results.InformOnlyViolations());
    results.AddRuleViolation(2, L"Cancel");
    CHECK_TEXT(results.RuleViolations(), L"2,7");
    CHECK_FALSE(results.InformOnlyViolations());
}

void PolicyResults_RemoveRuleViolation() {
    const auto results = Filled(JobObjects::PolicyResults::Create());
    results.AddRuleViolation(2, L"Cancel");
    results.RemoveRuleViolation(7);
    CHECK_TEXT(results.RuleViolations(), L"2");
}

void PolicyResults_ClearRuleViolations() {
    const auto results = Filled(JobObjects::PolicyResults::Create());
    results.ClearRuleViolations();
    CHECK_TEXT(results.RuleViolations(), L"");
}

void PolicyResults_RuleViolated() {
    const auto results = Filled(JobObjects::PolicyResults::Create());
    CHECK(results.RuleViolated(7));
    CHECK_FALSE(results.RuleViolated(8));
}

} // namespace methods

TEST_CASE("Wrapper_passes_text_numbers_dates_and_flags_in_both_directions") {
    TEXTS(CHECK_TEXT_PROPERTY);
    NUMBERS(CHECK_NUMBER_PROPERTY);
    DATES(CHECK_DATE_PROPERTY);
    FLAGS(CHECK_FLAG_PROPERTY);
}

TEST_CASE("Wrapper_passes_children_in_both_directions") {
    CHILDREN(CHECK_CHILD_PROPERTY);
}

TEST_CASE("Wrapper_reads_read_only_properties") {
    READ_ONLY(CHECK_READ_ONLY_PROPERTY);
}

TEST_CASE("Wrapper_passes_records_as_xml") {
#define CHECK_XML(Class) CheckXml<JobObjects::Class>();
    CLASSES(CHECK_XML);
}

TEST_CASE("Wrapper_calls_each_method") {
#define CALL_METHOD(Class, Name) methods::Class##_##Name();
    METHODS(CALL_METHOD);
}

TEST_CASE("Wrapper_passes_an_empty_reference_as_no_object") {
    const auto job = JobObjects::PrintJob::Create();
    CHECK_FALSE(job.PolicyResults());
    job.PolicyResults(JobObjects::PolicyResults::Create());
    CHECK(job.PolicyResults());
    job.PolicyResults({});
    CHECK_FALSE(job.PolicyResults());
}

TEST_CASE("Wrapper_failure_has_result_and_description") {
    const auto printer = JobObjects::LogicalPrinter::Create();
    const JobObjects::Error error = ErrorOf([&] { printer.Xml(L"no printer"); });
    CHECK_HR(error.Result(), E_FAIL);
    CHECK(!error.Description().empty());
    CHECK(std::string(error.what()) == "0x80004005: " + Narrow(error.Description()));
}

TEST_CASE("Wrapper_failure_without_error_information_has_no_stale_description") {
    LeaveErrorInfo(L"earlier failure");
    ForeignChild line(JobObjects::CopyLine::InterfaceId);
    line.getResult = E_ACCESSDENIED;
    const JobObjects::Error error = ErrorOf([&] { JobObjects::CopyLine(line.As<ICopyLine>()).Xml(); });
    CHECK_HR(error.Result(), E_ACCESSDENIED);
    CHECK_TEXT(error.Description(), L"");
    CHECK(std::string(error.what()) == "0x80070005: ");
}

TEST_CASE("Wrapper_failure_has_the_description_only_if_the_object_vouches_for_the_interface") {
    ForeignChild line(JobObjects::CopyLine::InterfaceId);
    line.getResult = E_ACCESSDENIED;
    line.ExplainFailures(L"the line \u00FC is locked");
    const auto description = [&] {
        return ErrorOf([&] { JobObjects::CopyLine(line.As<ICopyLine>()).Xml(); }).Description();
    };
    CHECK_TEXT(description(), L"the line \u00FC is locked");
    line.vouches = S_FALSE;
    CHECK_TEXT(description(), L"");
}

TEST_CASE("Wrapper_call_without_object_fails") {
    CHECK_HR(ErrorOf([] { JobObjects::PrintJob().Xml(); }).Result(), E_POINTER);
    CHECK_HR(ErrorOf([] { JobObjects::PrintJob().JobSize(1); }).Result(), E_POINTER);
}

TEST_CASE("Wrapper_counts_references") {
    ForeignChild line(JobObjects::CopyLine::InterfaceId);
    {
        JobObjects::CopyLine first(line.As<ICopyLine>());
        CHECK(line.references == 1);
        JobObjects::CopyLine second = first;
        CHECK(line.references == 2);
        const JobObjects::CopyLine third = std::move(first);
        CHECK(line.references == 2);
        first = third;
        CHECK(line.references == 3);
        second = {};
        CHECK(line.references == 2);
        *first.Out() = nullptr;
        CHECK(line.references == 1);
    }
    CHECK(line.references == 0);
}
