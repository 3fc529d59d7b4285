#include "ShortClient.h"

#include "Check.h"

#include "common/com/Bstr.h"
#include "common/com/ComPtr.h"

#include "JobObjects.h"

#include <stdexcept>
#include <string_view>

namespace {

using CreateObject = HRESULT (*)(REFCLSID classId, REFIID iid, void** object);

decltype(&DllGetClassObject) getClassObject;

HRESULT CreateByClassObject(REFCLSID classId, REFIID iid, void** object) {
    ComPtr<IClassFactory> factory;
    const HRESULT result = getClassObject(classId, IID_IClassFactory, factory.PutVoid());
    return FAILED(result) ? result : factory->CreateInstance(nullptr, iid, object);
}

HRESULT CreateRegistered(REFCLSID classId, REFIID iid, void** object) {
    return CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, iid, object);
}

template<class Class, class Interface>
ComPtr<Interface> Create(CreateObject create) {
    ComPtr<Interface> object;
    CHECK_THAT(create(__uuidof(Class), __uuidof(Interface), object.PutVoid()) == S_OK);
    CHECK_THAT(object);
    return object;
}

template<class Interface>
void PutText(const ComPtr<Interface>& object, HRESULT (STDMETHODCALLTYPE Interface::*putter)(BSTR),
             std::wstring_view text) {
    CHECK_THAT((object.Get()->*putter)(UniqueBstr(text).Get()) == S_OK);
}

template<class Interface>
UniqueBstr Text(const ComPtr<Interface>& object, HRESULT (STDMETHODCALLTYPE Interface::*getter)(BSTR*)) {
    UniqueBstr text;
    CHECK_THAT((object.Get()->*getter)(text.Put()) == S_OK);
    return text;
}

/// Makes the library throw, and reads the description.
void FailAndReadDescription(const ComPtr<IPolicyResults>& results) {
    CHECK_THAT(results->put_Xml(UniqueBstr(L"<a/>").Get()) == E_FAIL);
    ComPtr<IErrorInfo> error;
    CHECK_THAT(GetErrorInfo(0, error.Put()) == S_OK);
    UniqueBstr description;
    CHECK_THAT(error->GetDescription(description.Put()) == S_OK);
    CHECK_THAT(description.View() == L"PolicyResults element is missing.");
}

void FillWriteAndRead(const ComPtr<IPolicyResults>& results, const ComPtr<IPolicyResults>& reader) {
    constexpr std::wstring_view name = L"\u0130I\u0131i & \u2713";
    CHECK_THAT(results->put_PolicyId(17) == S_OK);
    PutText(results, &IPolicyResults::put_PolicyName, name);
    CHECK_THAT(results->AddRuleViolation(2, UniqueBstr(L"Inform").Get()) == S_OK);
    const UniqueBstr xml = Text(results, &IPolicyResults::get_Xml);
    PutText(reader, &IPolicyResults::put_Xml, xml.View());
    LONG id = 0;
    CHECK_THAT(reader->get_PolicyId(&id) == S_OK);
    CHECK_THAT(id == 17);
    CHECK_THAT(Text(reader, &IPolicyResults::get_PolicyName).View() == name);
    CHECK_THAT(Text(reader, &IPolicyResults::get_Xml).View() == xml.View());
}

/// Makes the library read the catalogue and compare words case-insensitively.
void MatchWords(const ComPtr<IJobContents>& contents) {
    UniqueBstr paper, dimensions, language, finishing, page, unmatched;
    VARIANT_BOOL isColor = VARIANT_FALSE;
    CHECK_THAT(contents->MatchAttributes(UniqueBstr(L"A3,Color,POSTSCRIPT,Hologram").Get(), paper.Put(),
                                         dimensions.Put(), language.Put(), finishing.Put(), page.Put(),
                                         &isColor, unmatched.Put()) == S_OK);
    CHECK_THAT(paper.View() == L"A3");
    CHECK_THAT(dimensions.View() == L"2970,4200");
    CHECK_THAT(isColor == VARIANT_TRUE);
    CHECK_THAT(unmatched.View() == L"Hologram");
}

void UseObjects(CreateObject create) {
    const auto results = Create<PolicyResults, IPolicyResults>(create);
    FailAndReadDescription(results);
    ThrowAndCatch();
    FillWriteAndRead(results, Create<PolicyResults, IPolicyResults>(create));
    FailAndReadDescription(results);
    MatchWords(Create<JobContents, IJobContents>(create));
}

/// Uses a print job, which creates its children by ProgID.
void UsePrintJob() {
    constexpr DATE noonAndAHalf = 40241.5 + 1.0 / 48;
    const auto job = Create<PrintJob, IPrintJob>(CreateRegistered);
    CHECK_THAT(job->put_JobTimeUtc(noonAndAHalf) == S_OK);
    PutText(job, &IPrintJob::put_JobName, L"a < b");
    const UniqueBstr xml = Text(job, &IPrintJob::get_Xml);
    const auto reader = Create<PrintJob, IPrintJob>(CreateRegistered);
    PutText(reader, &IPrintJob::put_Xml, xml.View());
    CHECK_THAT(Text(reader, &IPrintJob::get_JobName).View() == L"a < b");
    CHECK_THAT(Text(reader, &IPrintJob::get_Xml).View() == xml.View());
    DATE time = 0;
    CHECK_THAT(reader->get_JobTimeUtc(&time) == S_OK);
    CHECK_THAT(time > noonAndAHalf - 1e-6 && time < noonAndAHalf + 1e-6);
}

template<class Function>
Function Find(HMODULE library, const char* name) {
    const FARPROC address = GetProcAddress(library, name);
    CHECK_THAT(address != nullptr);
    return reinterpret_cast<Function>(reinterpret_cast<void*>(address));
}

bool IsLoaded() {
    return GetModuleHandleW(L"Tarnwick.dll") != nullptr;
}

} // namespace

void ThrowAndCatch() {
    try {
        throw std::runtime_error("the host's own");
    } catch (const std::exception& error) {
        CHECK_THAT(std::string_view(error.what()) == "the host's own");
        return;
    }
    CHECK_THAT(false);
}

void UseLibrary(const wchar_t* path) {
    ThrowAndCatch();
    const HMODULE library = LoadLibraryW(path);
    CHECK_THAT(library != nullptr);
    ThrowAndCatch();
    getClassObject = Find<decltype(getClassObject)>(library, "DllGetClassObject");
    UseObjects(CreateByClassObject);
    CHECK_THAT(Find<decltype(&DllCanUnloadNow)>(library, "DllCanUnloadNow")() == S_OK);
    CHECK_THAT(FreeLibrary(library));
    ThrowAndCatch();
}

void UseRegisteredClasses() {
    ThrowAndCatch();
    UseObjects(CreateRegistered);
    UsePrintJob();
    ThrowAndCatch();
}

void UnloadRegistered() {
    CoFreeUnusedLibrariesEx(0, 0);
    CHECK_THAT(!IsLoaded());
    ThrowAndCatch();
}
