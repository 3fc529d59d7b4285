#include "../CapturedLog.h"
#include "common/com/Bstr.h"
#include "common/com/ErrorReporting.h"
#include "tests/support/Wine.h"

#include <catch2/catch.hpp>

#include <new>
#include <stdexcept>
#include <string>

namespace {

constexpr wchar_t Source[] = L"CTestImpl::get_Xml";
constexpr auto OwnResult = static_cast<HRESULT>(0x8004FF05); // without a system message

using Lines = std::vector<std::wstring>;

/// Takes the thread's error information.
ComPtr<IErrorInfo> TakeInfo() {
    ComPtr<IErrorInfo> info;
    GetErrorInfo(0, info.Put());
    return info;
}

std::wstring Description(const ComPtr<IErrorInfo>& info) {
    UniqueBstr text;
    if (!info || info->GetDescription(text.Put()) != S_OK)
        return L"<none>";
    return std::wstring(text.View());
}

std::wstring TakeDescription() {
    return Description(TakeInfo());
}

/// Error information as another component would leave it, with all its fields.
ComPtr<IErrorInfo> ForeignInfo() {
    ComPtr<ICreateErrorInfo> creator;
    REQUIRE(CreateErrorInfo(creator.Put()) == S_OK);
    creator->SetDescription(const_cast<wchar_t*>(L"foreign text"));
    creator->SetSource(const_cast<wchar_t*>(L"Foreign.Component"));
    creator->SetGUID(IID_IPersist);
    ComPtr<IErrorInfo> info;
    REQUIRE(creator->QueryInterface(IID_IErrorInfo, info.PutVoid()) == S_OK);
    return info;
}

/// The system's text without its line end; empty if there is none.
std::wstring SystemText(HRESULT code) {
    wchar_t buffer[512];
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                        static_cast<DWORD>(code), MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT),
                                        buffer, 512, nullptr);
    std::wstring text(buffer, length);
    if (text.size() >= 2 && text.back() == L'\n') {
        text.pop_back();
        if (text.back() == L'\r')
            text.pop_back();
    }
    return text;
}

/// An object with or without ISupportErrorInfo.
struct FailingObject : ISupportErrorInfo {
    bool explains = true;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        *object = explains && iid == IID_ISupportErrorInfo ? this : nullptr;
        return *object ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) override {
        return iid == IID_IDispatch ? S_OK : S_FALSE;
    }
};

struct Session {
    CapturedLog log;

    Session() { SetErrorInfo(0, nullptr); }
    ~Session() { SetErrorInfo(0, nullptr); }
};

} // namespace

TEST_CASE("RunMethod_without_a_failure_returns_the_result_and_reports_nothing") {
    Session session;
    bool ran = false;
    CHECK(RunMethod(Source, [&] { ran = true; }) == S_OK);
    CHECK(ran);
    CHECK(RunMethod(Source, [] { return S_FALSE; }) == S_FALSE);
    CHECK(RunMethod(Source, [] { return E_INVALIDARG; }) == E_INVALIDARG);
    CHECK(session.log.TakeLines().empty());
    CHECK_FALSE(TakeInfo());
}

TEST_CASE("RunMethod_QxException_reports_its_message") {
    Session session;
    CHECK(RunMethod(Source, [] { throw QxException(L"Thing is missing."); }) == E_FAIL);
    CHECK(session.log.TakeLines() == Lines{L"[CTestImpl::get_Xml] Exception: Thing is missing."});
    CHECK(TakeDescription() == L"Thing is missing.");
}

TEST_CASE("RunMethod_QxException_without_a_message_reports_an_empty_description") {
    Session session;
    CHECK(RunMethod(Source, [] { throw QxException(L""); }) == E_FAIL);
    CHECK(session.log.TakeLines() == Lines{L"[CTestImpl::get_Xml] Exception: "});
    const ComPtr<IErrorInfo> info = TakeInfo();
    REQUIRE(info);
    UniqueBstr text;
    CHECK(info->GetDescription(text.Put()) == S_OK);
    CHECK(text.View().empty());

    const wchar_t* nothing = nullptr;
    CHECK(RunMethod(Source, [&] { throw QxException(nothing); }) == E_FAIL);
    CHECK(session.log.TakeLines() == Lines{L"[CTestImpl::get_Xml] Exception: "});
}

TEST_CASE("RunMethod_class_derived_from_QxException_is_reported_as_QxException") {
    struct Derived : QxException {
        Derived() : QxException(L"derived") {}
    };
    Session session;
    CHECK(RunMethod(Source, [] { throw Derived(); }) == E_FAIL);
    CHECK(TakeDescription() == L"derived");
}

TEST_CASE("RunMethod_ComError_without_information_reports_its_code_and_message") {
    Session session;
    CHECK(RunMethod(Source, [] { throw ComError(OwnResult); }) == OwnResult);
    CHECK(session.log.TakeLines() == Lines{L"[CTestImpl::get_Xml] Exception: IDispatch error #64773"});
    CHECK(TakeDescription() == L"IDispatch error #64773");
}

TEST_CASE("RunMethod_ComError_with_information_passes_on_the_same_object") {
    Session session;
    const ComPtr<IErrorInfo> info = ForeignInfo();
    CHECK(RunMethod(Source, [&] { throw ComError(OwnResult, info); }) == OwnResult);
    CHECK(session.log.TakeLines() == Lines{L"[CTestImpl::get_Xml] COM exception: IDispatch error #64773"});

    const ComPtr<IErrorInfo> passed = TakeInfo();
    CHECK(passed.Get() == info.Get());
    CHECK(Description(passed) == L"foreign text");
    UniqueBstr thrower;
    CHECK(passed->GetSource(thrower.Put()) == S_OK);
    CHECK(thrower.View() == L"Foreign.Component");
    GUID guid = GUID_NULL;
    CHECK(passed->GetGUID(&guid) == S_OK);
    CHECK(guid == IID_IPersist);
}

TEST_CASE("RunMethod_bad_alloc_is_E_OUTOFMEMORY") {
    Session session;
    const std::wstring text = SystemText(E_OUTOFMEMORY);
    REQUIRE_FALSE(text.empty());
    const Lines expected{L"[CTestImpl::get_Xml] Exception: " + text};
    CHECK(RunMethod(Source, [] { throw std::bad_alloc(); }) == E_OUTOFMEMORY);
    CHECK(session.log.TakeLines() == expected);
    CHECK(TakeDescription() == text);
    CHECK(RunMethod(Source, [] { throw std::length_error("too long"); }) == E_OUTOFMEMORY);
    CHECK(session.log.TakeLines() == expected);
    CHECK(TakeDescription() == text);
}

TEST_CASE("RunMethod_standard_exception_reports_its_complete_text") {
    Session session;
    CHECK(RunMethod(Source, [] { throw std::runtime_error("ran into a wall"); }) == E_FAIL);
    CHECK(session.log.TakeLines() == Lines{L"[CTestImpl::get_Xml] Exception: ran into a wall"});
    CHECK(TakeDescription() == L"ran into a wall");

    for (const std::size_t length : {127u, 128u, 255u, 256u, 3000u}) {
        INFO(length);
        CHECK(RunMethod(Source, [&] { throw std::logic_error(std::string(length, 'w')); }) == E_FAIL);
        CHECK(TakeDescription() == std::wstring(length, L'w'));
    }
}

TEST_CASE("RunMethod_other_exception_is_a_general_exception") {
    Session session;
    const Lines expected{L"[CTestImpl::get_Xml] Exception: A general exception occurred."};
    CHECK(RunMethod(Source, [] { throw 5; }) == E_FAIL);
    CHECK(session.log.TakeLines() == expected);
    CHECK(TakeDescription() == L"A general exception occurred.");
    CHECK(RunMethod(Source, [] { throw L"text"; }) == E_FAIL);
    CHECK(session.log.TakeLines() == expected);
    CHECK(TakeDescription() == L"A general exception occurred.");
}

TEST_CASE("RunMethod_removes_an_earlier_description") {
    Session session;
    RunMethod(Source, [] { throw QxException(L"first"); });
    RunMethod(Source, [] { throw QxException(L"second"); });
    CHECK(TakeDescription() == L"second");
}

TEST_CASE("ReportException_logs_under_the_com_category") {
    CapturedLog log(LogFormat::Category | LogFormat::TypeLetter);
    ReportException(L"text", Source);
    ReportComError(ComError(OwnResult, ForeignInfo()), Source);
    SetErrorInfo(0, nullptr);
    CHECK(log.TakeLines() == Lines{L"[CQxCom e] [CTestImpl::get_Xml] Exception: text",
                                   L"[CQxCom e] [CTestImpl::get_Xml] COM exception: IDispatch error #64773"});
}

TEST_CASE("ReportException_description_keeps_its_length") {
    Session session;
    for (const std::size_t length : {0u, 1u, 126u, 127u, 128u, 129u, 5000u}) {
        INFO(length);
        std::wstring message(length, L'x');
        if (length)
            message.back() = L'\u00e4';
        CHECK(ReportException(message.c_str(), Source) == S_OK);
        CHECK(session.log.TakeLines() == Lines{L"[CTestImpl::get_Xml] Exception: " + message});
        CHECK(TakeDescription() == message);
    }
}

TEST_CASE("ReportException_message_is_not_a_format") {
    Session session;
    ReportException(L"100%s %d %n", L"C%d::x");
    CHECK(session.log.TakeLines() == Lines{L"[C%d::x] Exception: 100%s %d %n"});
    CHECK(TakeDescription() == L"100%s %d %n");
}

TEST_CASE("ReportException_sets_only_the_description") {
    Session session;
    ReportException(L"text", Source);
    const ComPtr<IErrorInfo> info = TakeInfo();
    REQUIRE(info);
    UniqueBstr thrower;
    info->GetSource(thrower.Put());
    CHECK(thrower.View().empty());
    UniqueBstr helpFile;
    info->GetHelpFile(helpFile.Put());
    CHECK(helpFile.View().empty());
}

TEST_CASE("ComError_message_without_a_system_text_contains_the_code") {
    const struct {
        unsigned long code;
        const wchar_t* text;
        bool windowsMayHaveText; ///< winerror.h lists codes of this range
    } rows[] = {
        {0x80040200, L"Unknown error 0x80040200", true},  {0x80040201, L"IDispatch error #1", true},
        {0x80040205, L"IDispatch error #5", true},        {0x8004FFFE, L"IDispatch error #65022", false},
        {0x8004FFFF, L"IDispatch error #65023", false},   {0x8004F0AB, L"IDispatch error #61099", false},
        {0xA0000001, L"Unknown error 0xA0000001", false}, {0xE0434F4D, L"Unknown error 0xE0434F4D", false},
    };
    for (const auto& row : rows) {
        INFO(row.code);
        const std::wstring systemText = SystemText(static_cast<HRESULT>(row.code));
        REQUIRE((systemText.empty() || (row.windowsMayHaveText && !RunsUnderWine())));
        CHECK(ComError(static_cast<HRESULT>(row.code)).Message() ==
              (systemText.empty() ? row.text : systemText.c_str()));
    }
}

TEST_CASE("ComError_message_of_the_system_has_no_line_end") {
    for (const HRESULT code :
         {E_ACCESSDENIED, E_OUTOFMEMORY, E_INVALIDARG, HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND)}) {
        const QxString message = ComError(code).Message();
        INFO(code);
        REQUIRE_FALSE(message.empty());
        CHECK(message.view().find_first_of(L"\r\n") == std::wstring_view::npos);
        CHECK(message.view() == SystemText(code));
    }
}

TEST_CASE("CallObject_uses_error_information_only_if_the_object_supports_it_for_the_interface") {
    Session session;
    FailingObject object;
    const ComPtr<IErrorInfo> info = ForeignInfo();
    const auto fail = [&](REFIID iid) {
        return RunMethod(Source, [&] {
            CallObject(&object, iid, [&] {
                SetErrorInfo(0, info.Get());
                return E_ABORT;
            });
        });
    };
    CHECK(fail(IID_IDispatch) == E_ABORT);
    CHECK(TakeInfo().Get() == info.Get());
    CHECK(fail(IID_IPersist) == E_ABORT);
    CHECK(TakeInfo().Get() != info.Get());
    object.explains = false;
    CHECK(fail(IID_IDispatch) == E_ABORT);
    CHECK(TakeInfo().Get() != info.Get());
}

TEST_CASE("CallObject_ignores_error_information_of_an_earlier_call") {
    Session session;
    FailingObject object;
    const ComPtr<IErrorInfo> earlier = ForeignInfo();
    SetErrorInfo(0, earlier.Get());
    CHECK(RunMethod(Source, [&] { CallObject(&object, IID_IDispatch, [] { return E_ABORT; }); }) == E_ABORT);
    const ComPtr<IErrorInfo> info = TakeInfo();
    CHECK(info);
    CHECK(info.Get() != earlier.Get());
}

TEST_CASE("CallObject_success_has_no_effect") {
    Session session;
    FailingObject object;
    CHECK(RunMethod(Source, [&] {
              CallObject(&object, IID_IDispatch, [] { return S_OK; });
              CallObject(&object, IID_IDispatch, [] { return S_FALSE; });
              ThrowIfFailed(S_FALSE);
          }) == S_OK);
    CHECK(session.log.TakeLines().empty());
}

TEST_CASE("FailWithoutInfo_removes_an_earlier_description") {
    Session session;
    ReportException(L"earlier", Source);
    CHECK(FailWithoutInfo(E_POINTER) == E_POINTER);
    CHECK_FALSE(TakeInfo());
}
