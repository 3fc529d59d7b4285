// Children that cannot be created. COM prefers a class object that the process registers over the
// library's, so the tests decide what a job gets.

#include "tests/support/ForeignChild.h"
#include "tests/support/RecordTest.h"

namespace {

constexpr auto OwnResult = static_cast<HRESULT>(0x8004FF05);

/// Replaces a child's class object during its lifetime. Returns the given child or fails.
class ClassSubstitute : public IClassFactory {
public:
    explicit ClassSubstitute(REFCLSID classId) {
        REQUIRE_HR(CoRegisterClassObject(classId, static_cast<IClassFactory*>(this), CLSCTX_INPROC_SERVER,
                                         REGCLS_MULTIPLEUSE, &m_cookie),
                   S_OK);
    }
    ~ClassSubstitute() { CoRevokeClassObject(m_cookie); }
    ClassSubstitute(const ClassSubstitute&) = delete;
    ClassSubstitute& operator=(const ClassSubstitute&) = delete;

    ForeignChild* child = nullptr; ///< null: creation fails with OwnResult
    int creations = 0;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        *object = iid == __uuidof(IUnknown) || iid == __uuidof(IClassFactory) ? this : nullptr;
        return *object ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID iid, void** object) override {
        ++creations;
        *object = nullptr;
        return child ? child->QueryInterface(iid, object) : OwnResult;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

private:
    DWORD m_cookie = 0;
};

template<class Job>
void CheckConstructionFails(REFCLSID classId, HRESULT expected) {
    void* object = reinterpret_cast<void*>(0x5A5A5A5A);
    CHECK_HR(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Job), &object), expected);
    CHECK(object == nullptr);
}

template<class Job, class Child>
void CheckHoldsNone(const ComPtr<Job>& job, HRESULT (STDMETHODCALLTYPE Job::*getter)(Child**)) {
    auto* child = reinterpret_cast<Child*>(0x5A5A5A5A);
    CHECK_HR((job.Get()->*getter)(&child), S_OK);
    CHECK(child == nullptr);
}

} // namespace

TEST_CASE("ChildCreation_of_contents_is_part_of_each_new_job") {
    ClassSubstitute substitute(__uuidof(JobContents));
    ForeignChild child(__uuidof(IJobContents));
    child.xml = L"<Foreign/>";
    substitute.child = &child;
    {
        const auto job = CreatePrintJob();
        CHECK(substitute.creations == 1);
        CHECK(child.references == 1);
        CHECK_HAS(UncheckedText(job, &IPrintJob::get_Xml), L"<Foreign/>");
    }
    CHECK(child.references == 0);
}

TEST_CASE("ChildCreation_that_fails_fails_the_construction_with_its_result") {
    ClassSubstitute substitute(__uuidof(JobContents));
    CheckConstructionFails<IPrintJob>(__uuidof(PrintJob), OwnResult);
    CheckConstructionFails<ICopyJob>(__uuidof(CopyJob), OwnResult);
    CheckConstructionFails<IScanJob>(__uuidof(ScanJob), OwnResult);
    CheckConstructionFails<IFaxJob>(__uuidof(FaxJob), OwnResult);
    CHECK(substitute.creations == 4);
    ForeignChild child(__uuidof(IJobContents));
    child.queryResult = E_ACCESSDENIED; // created, but without its interface
    substitute.child = &child;
    CheckConstructionFails<IPrintJob>(__uuidof(PrintJob), E_ACCESSDENIED);
    CHECK(child.references == 0);
}

TEST_CASE("ChildCreation_of_contents_that_fails_during_a_read_leaves_none") {
    const auto job = CreatePrintJob();
    {
        ClassSubstitute substitute(__uuidof(JobContents));
        CHECK_HR(Put(job, &IPrintJob::put_Xml,
                     RecordText(L"PrintJob", L"7.26", L"<JobName>read before</JobName>")),
                 OwnResult);
        CHECK_TEXT(TakeErrorDescription(), L"IDispatch error #64773");
    }
    CHECK_TEXT(Text(job, &IPrintJob::get_JobName), L"read before");
    CheckHoldsNone(job, &IPrintJob::get_JobContents);

    BSTR xml = reinterpret_cast<BSTR>(0x5A5A5A5A);
    CHECK_HR(job->get_Xml(&xml), E_POINTER);
    CHECK(xml == nullptr);
    const std::wstring description = TakeErrorDescription(); // the system's message
    CHECK_FALSE(description.empty());
    CHECK(description != L"<none>");

    REQUIRE_HR(Put(job, &IPrintJob::put_Xml, RecordText(L"PrintJob", L"7.26")), S_OK);
    CHECK_HAS(Text(job, &IPrintJob::get_Xml), L"<JobContents ");
}

TEST_CASE("ChildCreation_of_contents_is_repeated_by_a_read_that_contains_them") {
    const auto job = CreatePrintJob();
    {
        ClassSubstitute substitute(__uuidof(JobContents));
        CHECK_HR(Put(job, &IPrintJob::put_Xml, RecordText(L"PrintJob", L"7.26")), OwnResult);
    }
    const std::wstring contents = L"<JobContents><JobCopyLines/><JobPdl>PDF</JobPdl></JobContents>";
    REQUIRE_HR(Put(job, &IPrintJob::put_Xml, RecordText(L"PrintJob", L"7.26", contents)), S_OK);
    CHECK_HAS(Text(job, &IPrintJob::get_Xml), L"<JobPdl>PDF</JobPdl>");
}

TEST_CASE("ChildCreation_of_page_counter_contents_that_fails_fails_the_read") {
    const auto job = CreatePrintJob();
    ClassSubstitute substitute(__uuidof(JobContents));
    CHECK_HR(Put(job, &IPrintJob::put_Xml,
                 RecordText(L"PrintJob", L"7.26",
                            L"<JobContents><JobCopyLines/></JobContents>"
                            L"<PageCounterInfo><JobContents/></PageCounterInfo>")),
             OwnResult);
    CHECK(substitute.creations == 1); // the job already held its own contents
    CheckHoldsNone(job, &IPrintJob::get_PageCounterJobContents);
}

TEST_CASE("ChildCreation_of_other_children_that_fails_fails_the_read_with_E_POINTER") {
    const auto job = CreatePrintJob();
    {
        ClassSubstitute substitute(__uuidof(WindowsPrintInfo));
        CHECK_HR(Put(job, &IPrintJob::put_Xml, RecordText(L"PrintJob", L"7.26", L"<WindowsPrintInfo/>")),
                 E_POINTER);
        CHECK(substitute.creations == 1);
        CheckHoldsNone(job, &IPrintJob::get_WindowsPrintInfo);
    }
    {
        ClassSubstitute substitute(__uuidof(PolicyResults));
        CHECK_HR(Put(job, &IPrintJob::put_Xml, RecordText(L"PrintJob", L"7.26", L"<PolicyResults/>")),
                 E_POINTER);
        CHECK(substitute.creations == 1);
        CheckHoldsNone(job, &IPrintJob::get_PolicyResults);
    }
    CHECK(TakeErrorDescription() != L"<none>");
}

TEST_CASE("ChildCreation_of_policy_results_that_fails_fails_a_device_job_s_read") {
    const auto job = CreateCopyJob();
    ClassSubstitute substitute(__uuidof(PolicyResults));
    CHECK_HR(
        Put(job, &ICopyJob::put_Xml,
            RecordText(L"CopyJob", L"4.0", L"<JobContents><JobCopyLines/></JobContents><PolicyResults/>")),
        OwnResult);
    CHECK(substitute.creations == 1);
    CheckHoldsNone(job, &ICopyJob::get_PolicyResults);
}
