// Jobs with children that the client implements: what jobs require of them, and how their failures are
// reported.

#include "tests/support/ForeignChild.h"
#include "tests/support/RecordTest.h"

namespace {

constexpr auto OwnResult = static_cast<HRESULT>(0x8004FF05); // without a system message
constexpr auto ForeignText = L"<Foreign>1 &lt; 2</Foreign>";

/// One kind of child: the property that sets it and its XML element.
struct Kind {
    const char* name;
    IID interfaceId;
    HRESULT (*put)(IPrintJob* job, ForeignChild& child);
    const wchar_t* element;
    bool required;
};

const Kind Kinds[] = {
    {"JobContents", __uuidof(IJobContents),
     [](IPrintJob* job, ForeignChild& child) { return job->put_JobContents(child.As<IJobContents>()); },
     L"<JobContents a=\"1\">x</JobContents>", true},
    {"PageCounterJobContents", __uuidof(IJobContents),
     [](IPrintJob* job, ForeignChild& child) {
         return job->put_PageCounterJobContents(child.As<IJobContents>());
     },
     L"<PageCounterInfo><JobContents>x</JobContents></PageCounterInfo>", false},
    {"WindowsPrintInfo", __uuidof(IWindowsPrintInfo),
     [](IPrintJob* job, ForeignChild& child) {
         return job->put_WindowsPrintInfo(child.As<IWindowsPrintInfo>());
     },
     L"<WindowsPrintInfo>x</WindowsPrintInfo>", false},
    {"PolicyResults", __uuidof(IPolicyResults),
     [](IPrintJob* job, ForeignChild& child) { return job->put_PolicyResults(child.As<IPolicyResults>()); },
     L"<PolicyResults>x</PolicyResults>", false},
};

std::wstring TextWith(const Kind& kind) {
    return RecordText(L"PrintJob", L"7.26", kind.element);
}

/// The element that the child receives.
std::wstring ChildText(const Kind& kind) {
    const std::wstring text = kind.element;
    const std::wstring counter = L"<PageCounterInfo>";
    return text.starts_with(counter) ? text.substr(counter.size(), text.size() - 2 * counter.size() - 1)
                                     : text;
}

} // namespace

TEST_CASE("ForeignChild_is_held_and_released_by_the_job") {
    for (const Kind& kind : Kinds) {
        INFO(kind.name);
        ForeignChild child(kind.interfaceId);
        {
            const auto job = CreatePrintJob();
            REQUIRE_HR(kind.put(job.Get(), child), S_OK);
            CHECK(child.references == 1);
            REQUIRE_HR(kind.put(job.Get(), child), S_OK); // the same child again
            CHECK(child.references == 1);
            ForeignChild other(kind.interfaceId);
            REQUIRE_HR(kind.put(job.Get(), other), S_OK);
            CHECK(child.references == 0);
            CHECK(other.references == 1);
            REQUIRE_HR(kind.put(job.Get(), child), S_OK);
            CHECK(other.references == 0);
        }
        CHECK(child.references == 0);
    }
}

TEST_CASE("ForeignChild_may_use_its_job_during_the_job_s_destruction") {
    for (const Kind& kind : Kinds) {
        INFO(kind.name);
        ForeignChild child(kind.interfaceId);
        int looks = 0;
        auto job = CreatePrintJob();
        IPrintJob* const parent = job.Get(); // not counted
        child.released = [&] {
            ++looks;
            const ComPtr<IPrintJob> counted(parent);
            ComPtr<IUnknown> identity;
            CHECK_HR(parent->QueryInterface(IID_IUnknown, identity.PutVoid()), S_OK);
            ComPtr<ISupportErrorInfo> support;
            CHECK_HR(parent->QueryInterface(IID_ISupportErrorInfo, support.PutVoid()), S_OK);
        };
        REQUIRE_HR(kind.put(parent, child), S_OK);
        job = {};
        CHECK(looks == 1);
    }
    ForeignChild contents(__uuidof(IJobContents));
    int looks = 0;
    auto job = CreateFaxJob();
    contents.released = [&, parent = job.Get()] {
        ++looks;
        parent->AddRef();
        parent->Release();
    };
    REQUIRE_HR(job->put_JobContents(contents.As<IJobContents>()), S_OK);
    job = {};
    CHECK(looks == 1);
}

TEST_CASE("ForeignChild_text_is_written_into_the_job_s_unchanged") {
    for (const Kind& kind : Kinds) {
        INFO(kind.name);
        // Includes malformed text, because jobs do not parse it.
        for (const wchar_t* text : {ForeignText, L"", L"no markup < & at all", L"<a></b>"}) {
            ForeignChild child(kind.interfaceId);
            child.xml = text;
            const auto job = CreatePrintJob();
            const std::wstring without = UncheckedText(job, &IPrintJob::get_Xml);
            REQUIRE_HR(kind.put(job.Get(), child), S_OK);
            const std::wstring with = UncheckedText(job, &IPrintJob::get_Xml);
            if (kind.required)
                CHECK_HAS(with, L"</JobContentsDiscardCount>" + std::wstring(text) + L"<PageCounterInfo>");
            else
                CHECK(with.size() == without.size() + child.xml.size());
            if (!child.xml.empty())
                CHECK_HAS(with, text);
        }
    }
}

TEST_CASE("ForeignChild_texts_are_written_in_their_order") {
    ForeignChild children[] = {ForeignChild(Kinds[0].interfaceId), ForeignChild(Kinds[1].interfaceId),
                               ForeignChild(Kinds[2].interfaceId), ForeignChild(Kinds[3].interfaceId)};
    const wchar_t* const texts[] = {L"<A/>", L"<B/>", L"<C/>", L"<D/>"};
    const auto job = CreatePrintJob();
    for (int i = 0; i < 4; ++i) {
        children[i].xml = texts[i];
        REQUIRE_HR(Kinds[i].put(job.Get(), children[i]), S_OK);
    }
    CHECK_HAS(UncheckedText(job, &IPrintJob::get_Xml),
              L"</JobContentsDiscardCount><A/><PageCounterInfo><B/><PageCounterErrorMessage/>"
              L"<PageCounterResult/></PageCounterInfo><C/><D/></PrintJob>");
}

TEST_CASE("ForeignChild_receives_its_element_when_the_job_is_read") {
    for (const Kind& kind : Kinds) {
        INFO(kind.name);
        ForeignChild child(kind.interfaceId);
        const auto job = CreatePrintJob();
        REQUIRE_HR(kind.put(job.Get(), child), S_OK);
        REQUIRE_HR(Put(job, &IPrintJob::put_Xml, TextWith(kind)), S_OK);
        CHECK(child.puts == 1);
        CHECK_TEXT(child.xml, ChildText(kind));
        CHECK(child.references == 1); // reused, not replaced
        REQUIRE_HR(Put(job, &IPrintJob::put_Xml, RecordText(L"PrintJob", L"7.26")), S_OK);
        CHECK(child.puts == 1);
        CHECK(child.references == 0); // the element is missing
    }
}

TEST_CASE("ForeignChild_failure_of_reading_is_returned_unchanged") {
    for (const Kind& kind : Kinds) {
        INFO(kind.name);
        ForeignChild child(kind.interfaceId);
        child.ExplainFailures(L"The child does not like it.");
        child.putResult = OwnResult;
        const auto job = CreatePrintJob();
        REQUIRE_HR(kind.put(job.Get(), child), S_OK);
        CHECK_HR(Put(job, &IPrintJob::put_Xml, TextWith(kind)), OwnResult);
        ComPtr<IErrorInfo> info;
        REQUIRE_HR(GetErrorInfo(0, info.Put()), S_OK);
        CHECK(info.Get() == child.explanation.Get());
        CHECK(child.references == 1); // still held
    }
}

TEST_CASE("ForeignChild_failure_of_writing_is_returned_unchanged") {
    for (const Kind& kind : Kinds) {
        INFO(kind.name);
        ForeignChild child(kind.interfaceId);
        child.ExplainFailures(L"The child has nothing to say.");
        child.getResult = OwnResult;
        const auto job = CreatePrintJob();
        REQUIRE_HR(kind.put(job.Get(), child), S_OK);
        UniqueBstr xml;
        CHECK_HR(job->get_Xml(xml.Put()), OwnResult);
        CHECK(xml.Get() == nullptr);
        ComPtr<IErrorInfo> info;
        REQUIRE_HR(GetErrorInfo(0, info.Put()), S_OK);
        CHECK(info.Get() == child.explanation.Get());
        UniqueBstr source;
        REQUIRE_HR(info->GetSource(source.Put()), S_OK);
        CHECK_TEXT(source.View(), L"ForeignChild");
    }
}

TEST_CASE("ForeignChild_failure_of_the_page_counter_contents_fails_their_own_text_too") {
    ForeignChild child(__uuidof(IJobContents));
    child.ExplainFailures(L"The child has nothing to say.");
    child.getResult = OwnResult;
    const auto job = CreatePrintJob();
    REQUIRE_HR(job->put_PageCounterJobContents(child.As<IJobContents>()), S_OK);
    BSTR text = reinterpret_cast<BSTR>(0x5A5A5A5A);
    CHECK_HR(job->get_PageCounterInfoXml(&text), OwnResult);
    CHECK(text == nullptr);
    CHECK_TEXT(TakeErrorDescription(), L"The child has nothing to say.");
}

TEST_CASE("ForeignChild_failure_without_error_information_gets_the_text_of_its_result") {
    for (const Kind& kind : Kinds) {
        INFO(kind.name);
        ForeignChild child(kind.interfaceId);
        child.putResult = OwnResult;
        child.getResult = static_cast<HRESULT>(0xA0000001);
        const auto job = CreatePrintJob();
        REQUIRE_HR(kind.put(job.Get(), child), S_OK);
        CHECK_HR(Put(job, &IPrintJob::put_Xml, TextWith(kind)), OwnResult);
        CHECK_TEXT(TakeErrorDescription(), L"IDispatch error #64773");
        UniqueBstr xml;
        CHECK_HR(job->get_Xml(xml.Put()), child.getResult);
        CHECK_TEXT(TakeErrorDescription(), L"Unknown error 0xA0000001");
    }
}

TEST_CASE("ForeignChild_failure_is_not_explained_by_an_earlier_one") {
    for (const Kind& kind : Kinds) {
        INFO(kind.name);
        ForeignChild child(kind.interfaceId);
        child.ExplainFailures(L"about an earlier call");
        child.explainsEachFailure = false; // supports error information, but sets none
        child.putResult = OwnResult;
        child.getResult = OwnResult;
        const auto job = CreatePrintJob();
        REQUIRE_HR(kind.put(job.Get(), child), S_OK);
        SetErrorInfo(0, child.explanation.Get());
        CHECK_HR(Put(job, &IPrintJob::put_Xml, TextWith(kind)), OwnResult);
        CHECK_TEXT(TakeErrorDescription(), L"IDispatch error #64773");
        SetErrorInfo(0, child.explanation.Get());
        UniqueBstr xml;
        CHECK_HR(job->get_Xml(xml.Put()), OwnResult);
        CHECK_TEXT(TakeErrorDescription(), L"IDispatch error #64773");
    }
}

TEST_CASE("ForeignChild_error_information_without_declared_support_is_not_passed_on") {
    ForeignChild child(__uuidof(IJobContents));
    child.ExplainFailures(L"about something else");
    child.getResult = OwnResult;
    child.vouches = S_FALSE;
    const auto job = CreatePrintJob();
    REQUIRE_HR(job->put_JobContents(child.As<IJobContents>()), S_OK);
    UniqueBstr xml;
    CHECK_HR(job->get_Xml(xml.Put()), OwnResult);
    CHECK_TEXT(TakeErrorDescription(), L"IDispatch error #64773");
}

TEST_CASE("ForeignChild_receives_the_white_space_after_its_element_too") {
    ForeignChild child(__uuidof(IJobContents));
    const auto job = CreatePrintJob();
    REQUIRE_HR(job->put_JobContents(child.As<IJobContents>()), S_OK);
    REQUIRE_HR(Put(job, &IPrintJob::put_Xml,
                   RecordText(L"PrintJob", L"7.26",
                              L"\n <x:JobContents><a/>\t</x:JobContents>\r\n  <JobName>n</JobName>\n")),
               S_OK);
    CHECK_TEXT(child.xml, L"<x:JobContents><a/>\t</x:JobContents>\r\n  ");
    CHECK_TEXT(Text(job, &IPrintJob::get_JobName), L"n");
}

TEST_CASE("ForeignChild_without_the_interface_clears_an_optional_child") {
    for (const Kind& kind : Kinds) {
        INFO(kind.name);
        ForeignChild held(kind.interfaceId);
        ForeignChild child(kind.interfaceId);
        child.queryResult = E_NOINTERFACE;
        const auto job = CreatePrintJob();
        REQUIRE_HR(kind.put(job.Get(), held), S_OK);
        CHECK_HR(kind.put(job.Get(), child), kind.required ? E_NOINTERFACE : S_OK);
        CHECK(held.references == (kind.required ? 1 : 0));
        CHECK(child.references == 0);
    }
}

TEST_CASE("ForeignChild_whose_query_fails_with_another_code_does_not_replace_the_held_child") {
    for (const Kind& kind : Kinds) {
        INFO(kind.name);
        ForeignChild held(kind.interfaceId);
        ForeignChild child(kind.interfaceId);
        child.queryResult = OwnResult;
        const auto job = CreatePrintJob();
        REQUIRE_HR(kind.put(job.Get(), held), S_OK);
        CHECK_HR(kind.put(job.Get(), child), OwnResult);
        CHECK_TEXT(TakeErrorDescription(), L"IDispatch error #64773");
        CHECK(held.references == 1);
        CHECK(child.references == 0);
    }
}

TEST_CASE("ForeignChild_of_a_device_job_follows_the_same_rules") {
    ForeignChild contents(__uuidof(IJobContents));
    ForeignChild results(__uuidof(IPolicyResults));
    const auto job = CreateFaxJob();
    REQUIRE_HR(job->put_JobContents(contents.As<IJobContents>()), S_OK);
    REQUIRE_HR(job->put_PolicyResults(results.As<IPolicyResults>()), S_OK);
    contents.xml = L"<A/>";
    results.xml = L"<B/>";
    CHECK_HAS(UncheckedText(job, &IFaxJob::get_Xml), L"</Duration><A/><B/></FaxJob>");

    const std::wstring text = RecordText(L"FaxJob", L"4.2",
                                         L"<JobContents>c</JobContents>"
                                         L"<PolicyResults>p</PolicyResults>");
    CHECK_HR(Put(job, &IFaxJob::put_Xml, text), S_OK);
    CHECK_TEXT(contents.xml, L"<JobContents>c</JobContents>");
    CHECK_TEXT(results.xml, L"<PolicyResults>p</PolicyResults>");

    results.ExplainFailures(L"The results do not like it.");
    results.putResult = OwnResult;
    CHECK_HR(Put(job, &IFaxJob::put_Xml, text), OwnResult);
    CHECK_TEXT(TakeErrorDescription(), L"The results do not like it.");
    contents.putResult = E_ACCESSDENIED;
    CHECK_HR(Put(job, &IFaxJob::put_Xml, text), E_ACCESSDENIED);
    contents.ExplainFailures(L"The contents have nothing to say.");
    contents.getResult = OwnResult;
    UniqueBstr xml;
    CHECK_HR(job->get_Xml(xml.Put()), OwnResult);
    CHECK_TEXT(TakeErrorDescription(), L"The contents have nothing to say.");

    CHECK(contents.references == 1);
    CHECK(results.references == 1);
    contents.queryResult = OwnResult;
    results.queryResult = E_NOINTERFACE;
    CHECK_HR(job->put_JobContents(contents.As<IJobContents>()), OwnResult);
    CHECK_HR(job->put_PolicyResults(results.As<IPolicyResults>()), S_OK);
    CHECK(contents.references == 1);
    CHECK(results.references == 0);
}

TEST_CASE("ForeignChild_replaced_from_inside_its_own_call_lives_until_the_call_ends") {
    for (const Kind& kind : Kinds) {
        INFO(kind.name);
        ForeignChild child(kind.interfaceId);
        ForeignChild other(kind.interfaceId);
        const auto job = CreatePrintJob();
        child.callBack = [&] { CHECK_HR(kind.put(job.Get(), other), S_OK); };
        child.xml = ForeignText;
        other.xml = ForeignText;

        REQUIRE_HR(kind.put(job.Get(), child), S_OK);
        CHECK_HAS(UncheckedText(job, &IPrintJob::get_Xml), ForeignText);
        CHECK(child.referencesAfterCallBack == 1);
        CHECK(child.references == 0);

        REQUIRE_HR(kind.put(job.Get(), child), S_OK);
        REQUIRE_HR(Put(job, &IPrintJob::put_Xml, TextWith(kind)), S_OK);
        CHECK_TEXT(child.xml, ChildText(kind));
        CHECK(child.referencesAfterCallBack == 1);
        CHECK(child.references == 0);
        CHECK(other.references == 1);
        CHECK(other.puts == 0);
    }
}
