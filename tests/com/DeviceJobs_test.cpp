// Copy, scan and fax jobs. Common behaviour is tested on each of them.

#include "tests/support/RecordTest.h"

#include <cmath>
#include <cstdlib>

namespace {

const std::wstring ContentsElement = L"<JobContents><JobCopyLines/></JobContents>";
const std::wstring ResultsElement = L"<PolicyResults Version=\"4.0\"><PolicyId>5</PolicyId></PolicyResults>";

/// The names and constants of each job.
template<class Job>
struct Form;
template<>
struct Form<ICopyJob> {
    static constexpr const wchar_t* Root = L"CopyJob";
    static constexpr const wchar_t* Version = L"4.0";
    static ComPtr<ICopyJob> Create() { return CreateCopyJob(); }
};
template<>
struct Form<IScanJob> {
    static constexpr const wchar_t* Root = L"ScanJob";
    static constexpr const wchar_t* Version = L"4.0";
    static ComPtr<IScanJob> Create() { return CreateScanJob(); }
};
template<>
struct Form<IFaxJob> {
    static constexpr const wchar_t* Root = L"FaxJob";
    static constexpr const wchar_t* Version = L"4.2";
    static ComPtr<IFaxJob> Create() { return CreateFaxJob(); }
};

template<class Job>
HRESULT Read(const ComPtr<Job>& job, std::wstring_view version, std::wstring_view elements) {
    return Put(job, &Job::put_Xml, RecordText(Form<Job>::Root, version, elements));
}

template<class Job>
ComPtr<Job> JobFrom(std::wstring_view elements) {
    auto job = Form<Job>::Create();
    INFO(Narrow(elements));
    REQUIRE_HR(Read(job, Form<Job>::Version, std::wstring(elements) + ContentsElement), S_OK);
    return job;
}

template<class Job, class Child>
ComPtr<Child> Held(const ComPtr<Job>& job, HRESULT (STDMETHODCALLTYPE Job::*getter)(Child**)) {
    ComPtr<Child> child;
    REQUIRE_HR((job.Get()->*getter)(child.Put()), S_OK);
    return child;
}

template<class Job>
void CheckIgnoresPolicyResults() {
    const auto job = Form<Job>::Create();
    REQUIRE_HR(job->put_PolicyResults(CreatePolicyResults().Get()), S_OK);
    REQUIRE_HR(Read(job, L"3.5", ContentsElement + ResultsElement), S_OK);
    CHECK_TEXT(Text(job, &Job::get_Version), L"3.5");
    CHECK_FALSE(Held(job, &Job::get_PolicyResults));
    REQUIRE_HR(job->put_PolicyResults(CreatePolicyResults().Get()), S_OK);
    CHECK_HAS_NOT(Text(job, &Job::get_Xml), L"PolicyResults");
}

} // namespace

TEST_CASE("CopyJob_below_4_0_ignores_policy_results") {
    CheckIgnoresPolicyResults<ICopyJob>();
}
TEST_CASE("ScanJob_below_4_0_ignores_policy_results") {
    CheckIgnoresPolicyResults<IScanJob>();
}

/// Defines one test case per job from the body that follows; Job is the interface.
#define TEST_EACH_JOB(name)                                                                                  \
    template<class Job>                                                                                      \
    static void name();                                                                                      \
    TEST_CASE("CopyJob_" #name) {                                                                            \
        name<ICopyJob>();                                                                                    \
    }                                                                                                        \
    TEST_CASE("ScanJob_" #name) {                                                                            \
        name<IScanJob>();                                                                                    \
    }                                                                                                        \
    TEST_CASE("FaxJob_" #name) {                                                                             \
        name<IFaxJob>();                                                                                     \
    }                                                                                                        \
    template<class Job>                                                                                      \
    static void name()

TEST_EACH_JOB(new_record_has_a_time_in_whole_seconds) {
    const DATE time = Value(Form<Job>::Create(), &Job::get_JobTimeLocal);
    CHECK(std::abs(time * 86400 - std::round(time * 86400)) < 1e-3);
}

TEST_EACH_JOB(new_record_has_new_contents) {
    const auto contents = Held(Form<Job>::Create(), &Job::get_JobContents);
    REQUIRE(contents);
    CHECK_TEXT(Text(contents, &IJobContents::get_Xml), Text(CreateJobContents(), &IJobContents::get_Xml));
}

TEST_EACH_JOB(properties_are_stored_independently) {
    constexpr Property<Job, BSTR> texts[] = {PROPERTY(Job, JobGuid), PROPERTY(Job, CustomerCode),
                                             PROPERTY(Job, IdentifierData)};
    constexpr Property<Job, LONG> numbers[] = {PROPERTY(Job, IdentifierType), PROPERTY(Job, DeviceId)};
    const auto job = Form<Job>::Create();
    CheckTextProperties(job, texts);
    CheckNumberProperties(job, numbers);
}

TEST_EACH_JOB(children_are_the_held_objects_themselves) {
    const auto job = Form<Job>::Create();
    const auto contents = CreateJobContents();
    CHECK_HR(job->put_JobContents(contents.Get()), S_OK);
    CHECK(Held(job, &Job::get_JobContents).Get() == contents.Get());
    CHECK_HR(job->put_JobContents(nullptr), E_POINTER);
    CHECK(Held(job, &Job::get_JobContents).Get() == contents.Get());
    const auto results = CreatePolicyResults();
    CHECK_HR(job->put_PolicyResults(results.Get()), S_OK);
    CHECK(Held(job, &Job::get_PolicyResults).Get() == results.Get());
    CHECK_HR(job->put_PolicyResults(nullptr), S_OK);
    CHECK_FALSE(Held(job, &Job::get_PolicyResults));
}

TEST_EACH_JOB(without_its_root_fails_with_its_message) {
    const auto job = Form<Job>::Create();
    for (const wchar_t* text : {L"", L"<x/>", L"<PrintJob Version=\"4.2\"/>", L"<CopyJob", L"x"}) {
        CHECK_HR(Put(job, &Job::put_Xml, text), E_FAIL);
        CHECK_TEXT(TakeErrorDescription(), std::wstring(Form<Job>::Root) + L" element is missing.");
    }
}

TEST_EACH_JOB(version_has_no_default) {
    const auto job = Form<Job>::Create();
    const std::wstring root = Form<Job>::Root;
    for (const std::wstring attribute : {L"", L" Version=\"\"", L" Version=\"4\""}) {
        CHECK_HR(
            Put(job, &Job::put_Xml, L"<" + root + attribute + L">" + ContentsElement + L"</" + root + L">"),
            E_FAIL);
        CHECK_TEXT(TakeErrorDescription(),
                   L"Version has fewer than two components or more than four components.");
    }
    CHECK_HR(Read(job, L"4.x", ContentsElement), E_FAIL);
    CHECK_TEXT(TakeErrorDescription(),
               L"A major, minor, build, or revision component is not a valid non-zero number.");
    CHECK_TEXT(Text(job, &Job::get_Version), Form<Job>::Version);
}

TEST_EACH_JOB(version_is_kept_with_its_components) {
    const auto job = Form<Job>::Create();
    for (const wchar_t* version : {L"4.2", L"4.2.0", L"7.26", L"9.8.7.6"}) {
        REQUIRE_HR(Read(job, version, ContentsElement), S_OK);
        CHECK_TEXT(Text(job, &Job::get_Version), version);
        const std::wstring root = Form<Job>::Root;
        CHECK_HAS(Text(job, &Job::get_Xml), L"<" + root +
                                                L" xmlns=\"http://schemas.corvane.example/OutputManagement/" +
                                                root + L"\" Version=\"" + version + L"\"><JobGuid/>");
    }
}

TEST_CASE("DeviceJob_older_version_is_raised_for_a_fax_only") {
    const auto copy = CreateCopyJob();
    const auto scan = CreateScanJob();
    const auto fax = CreateFaxJob();
    for (const wchar_t* version : {L"0.0", L"3.5", L"4.0", L"4.1.9"}) {
        REQUIRE_HR(Read(copy, version, ContentsElement), S_OK);
        CHECK_TEXT(Text(copy, &ICopyJob::get_Version), version);
        REQUIRE_HR(Read(scan, version, ContentsElement), S_OK);
        CHECK_TEXT(Text(scan, &IScanJob::get_Version), version);
        REQUIRE_HR(Read(fax, version, ContentsElement + ResultsElement), S_OK);
        CHECK_TEXT(Text(fax, &IFaxJob::get_Version), L"4.2");
        CHECK(Held(fax, &IFaxJob::get_PolicyResults)); // of the raised version
    }
}

TEST_EACH_JOB(elements_are_read_in_any_order_and_default_when_missing) {
    const auto job =
        JobFrom<Job>(L"<Unknown/><DeviceId>12</DeviceId><!-- x --><p:JobGuid>g &amp; h</p:JobGuid>"
                     L"<JobTimeLocal>2010-03-04T05:06:07.999</JobTimeLocal>"
                     L"<IdentifierType>3</IdentifierType><IdentifierType>4</IdentifierType>"
                     L"<CustomerCode><![CDATA[<c>]]></CustomerCode>"
                     L"<IdentifierData>d</IdentifierData>");
    CHECK_TEXT(Text(job, &Job::get_JobGuid), L"g & h");
    CHECK_TEXT(Text(job, &Job::get_CustomerCode), L"<c>");
    CHECK_TEXT(Text(job, &Job::get_IdentifierData), L"d");
    CHECK(Value(job, &Job::get_IdentifierType) == 3);
    CHECK(Value(job, &Job::get_DeviceId) == 12);
    CHECK_TEXT(DateText(Value(job, &Job::get_JobTimeLocal)), L"2010-03-04T05:06:07");
    REQUIRE_HR(Read(job, Form<Job>::Version, ContentsElement), S_OK);
    CHECK_TEXT(Text(job, &Job::get_JobGuid), L"");
    CHECK_TEXT(Text(job, &Job::get_CustomerCode), L"");
    CHECK_TEXT(Text(job, &Job::get_IdentifierData), L"");
    CHECK(Value(job, &Job::get_IdentifierType) == 0);
    CHECK(Value(job, &Job::get_DeviceId) == 0);
    CHECK(Value(job, &Job::get_JobTimeLocal) == 0);
}

TEST_EACH_JOB(numbers_are_read_as_positive_values_and_zero_otherwise) {
    for (const wchar_t* text : {L"-3", L"0", L"x", L""}) {
        const std::wstring value = text;
        const auto job = JobFrom<Job>(L"<IdentifierType>" + value + L"</IdentifierType><DeviceId>" + value +
                                      L"</DeviceId>");
        CHECK(Value(job, &Job::get_IdentifierType) == 0);
        CHECK(Value(job, &Job::get_DeviceId) == 0);
    }
}

TEST_EACH_JOB(time_is_not_stamped) {
    const auto job = Form<Job>::Create();
    for (const wchar_t* text : {L"", L"x", L"2010-13-01", L"00:00:00"}) {
        REQUIRE_HR(
            Read(job, L"4.2", L"<JobTimeLocal>" + std::wstring(text) + L"</JobTimeLocal>" + ContentsElement),
            S_OK);
        CHECK_HAS(Text(job, &Job::get_Xml), L"<JobTimeLocal/>");
        CHECK(Value(job, &Job::get_JobTimeLocal) == 0);
    }
    REQUIRE_HR(job->put_JobTimeLocal(0.25), S_OK);
    CHECK_HAS(Text(job, &Job::get_Xml), L"<JobTimeLocal>06:00:00</JobTimeLocal>");
    REQUIRE_HR(job->put_JobTimeLocal(1e300), S_OK);
    CHECK_HAS(Text(job, &Job::get_Xml), L"<JobTimeLocal>Invalid DateTime</JobTimeLocal>");
}

TEST_EACH_JOB(without_contents_fails_after_its_fields_were_read) {
    const auto job = Form<Job>::Create();
    REQUIRE_HR(job->put_PolicyResults(CreatePolicyResults().Get()), S_OK);
    CHECK_HR(Read(job, L"7.0",
                  L"<JobGuid>new</JobGuid><DeviceId>7</DeviceId>"
                  L"<JobTimeLocal>2010-03-04</JobTimeLocal>"),
             E_FAIL);
    CHECK_TEXT(TakeErrorDescription(), L"JobContents element is missing.");
    CHECK_TEXT(Text(job, &Job::get_Version), L"7.0");
    CHECK_TEXT(Text(job, &Job::get_JobGuid), L"new");
    CHECK(Value(job, &Job::get_DeviceId) == 7);
    CHECK_TEXT(DateText(Value(job, &Job::get_JobTimeLocal)), L"2010-03-04T00:00:00");
    CHECK(Held(job, &Job::get_JobContents));
    CHECK(Held(job, &Job::get_PolicyResults)); // not read yet
}

TEST_EACH_JOB(reads_into_the_held_children) {
    const auto job = Form<Job>::Create();
    const auto contents = Held(job, &Job::get_JobContents);
    REQUIRE_HR(Read(job, L"4.2",
                    L"<JobContents><JobCopyLines/><JobCopies>3</JobCopies></JobContents>" + ResultsElement),
               S_OK);
    CHECK(Held(job, &Job::get_JobContents).Get() == contents.Get());
    CHECK(Value(contents, &IJobContents::get_JobCopies) == 3);
    const auto results = Held(job, &Job::get_PolicyResults);
    REQUIRE(results);
    CHECK(Value(results, &IPolicyResults::get_PolicyId) == 5);
    REQUIRE_HR(Read(job, L"4.2", ContentsElement + L"<PolicyResults Version=\"4.0\"/>"), S_OK);
    CHECK(Held(job, &Job::get_PolicyResults).Get() == results.Get());
    CHECK(Value(results, &IPolicyResults::get_PolicyId) == 0);
    REQUIRE_HR(Read(job, L"4.2", ContentsElement), S_OK);
    CHECK_FALSE(Held(job, &Job::get_PolicyResults));
}

TEST_EACH_JOB(child_that_cannot_be_read_fails_with_its_own_message) {
    const auto job = Form<Job>::Create();
    CHECK_HR(Read(job, L"4.2", L"<JobContents/>"), E_FAIL);
    CHECK_TEXT(TakeErrorDescription(), L"[CJobContentsImpl::put_Xml] Invalid Xml fragment");
    CHECK_HR(Read(job, L"4.2", ContentsElement + L"<PolicyResults Version=\"4.x\"/>"), E_FAIL);
    CHECK_TEXT(TakeErrorDescription(),
               L"A major, minor, build, or revision component is not a valid non-zero number.");
}

TEST_CASE("ScanJob_own_properties_are_kept_and_read") {
    constexpr Property<IScanJob, BSTR> texts[] = {PROPERTY(IScanJob, Destination)};
    constexpr Property<IScanJob, LONG> numbers[] = {PROPERTY(IScanJob, DestinationType),
                                                    PROPERTY(IScanJob, Duration)};
    const auto job = CreateScanJob();
    CheckTextProperties(job, texts);
    CheckNumberProperties(job, numbers);
    const auto read = JobFrom<IScanJob>(L"<Duration>61</Duration><Destination>d</Destination>"
                                        L"<DestinationType>2</DestinationType>");
    CHECK(Value(read, &IScanJob::get_DestinationType) == 2);
    CHECK_TEXT(Text(read, &IScanJob::get_Destination), L"d");
    CHECK(Value(read, &IScanJob::get_Duration) == 61);
    REQUIRE_HR(
        Read(read, L"4.0", L"<Duration>-3</Duration><DestinationType>x</DestinationType>" + ContentsElement),
        S_OK);
    CHECK(Value(read, &IScanJob::get_DestinationType) == 0);
    CHECK_TEXT(Text(read, &IScanJob::get_Destination), L"");
    CHECK(Value(read, &IScanJob::get_Duration) == 0);
}

TEST_CASE("FaxJob_own_properties_are_kept_and_read") {
    constexpr Property<IFaxJob, BSTR> texts[] = {PROPERTY(IFaxJob, PhoneNumber),
                                                 PROPERTY(IFaxJob, RemoteStationId)};
    constexpr Property<IFaxJob, LONG> numbers[] = {PROPERTY(IFaxJob, Duration)};
    const auto job = CreateFaxJob();
    CheckTextProperties(job, texts);
    CheckNumberProperties(job, numbers);
    const auto read = JobFrom<IFaxJob>(L"<Duration>61</Duration><RemoteStationId>r</RemoteStationId>"
                                       L"<PhoneNumber>+49</PhoneNumber>");
    CHECK_TEXT(Text(read, &IFaxJob::get_PhoneNumber), L"+49");
    CHECK_TEXT(Text(read, &IFaxJob::get_RemoteStationId), L"r");
    CHECK(Value(read, &IFaxJob::get_Duration) == 61);
    REQUIRE_HR(Read(read, L"4.2", L"<Duration>-3</Duration>" + ContentsElement), S_OK);
    CHECK_TEXT(Text(read, &IFaxJob::get_PhoneNumber), L"");
    CHECK_TEXT(Text(read, &IFaxJob::get_RemoteStationId), L"");
    CHECK(Value(read, &IFaxJob::get_Duration) == 0);
}
