#include "Apartments.h"

#include "tests/support/ComClient.h"
#include "tests/support/Wine.h"

#include <exception>

namespace {

constexpr const wchar_t* LibraryId = L"{D47A619E-7CB5-4B98-9A01-93662E11761E}";

std::wstring LocaleKey(const wchar_t* locale) {
    return std::wstring(L"TypeLib\\") + LibraryId + L"\\1.0\\" + locale;
}

struct Visit {
    DWORD apartment;
    const std::function<void()>& work;
    HRESULT joined;
    std::exception_ptr failure;
};

DWORD WINAPI VisitApartment(void* argument) {
    Visit& visit = *static_cast<Visit*>(argument);
    visit.joined = CoInitializeEx(nullptr, visit.apartment);
    if (FAILED(visit.joined))
        return 1;
    try {
        visit.work();
    } catch (...) {
        visit.failure = std::current_exception();
    }
    CoUninitialize();
    return 0;
}

} // namespace

void RunInApartment(DWORD apartment, const std::function<void()>& work) {
    Visit visit{apartment, work, E_UNEXPECTED, nullptr};
    const HANDLE thread = CreateThread(nullptr, 0, VisitApartment, &visit, 0, nullptr);
    REQUIRE(thread != nullptr);
    WaitAndAnswerCalls(thread);
    CloseHandle(thread);
    REQUIRE_HR(visit.joined, S_OK);
    if (visit.failure)
        std::rethrow_exception(visit.failure);
}

void WaitAndAnswerCalls(HANDLE handle) {
    DWORD index = 0;
    const HRESULT waited = CoWaitForMultipleHandles(0, 60000, 1, &handle, &index);
    if (FAILED(waited)) {
        // The other thread uses this stack, so it cannot be unwound.
        std::fputs("the other apartment does not finish\n", stderr);
        std::fflush(stderr);
        ExitProcess(253);
    }
}

MarshallerKey::MarshallerKey() {
    if (!RunsUnderWine())
        return;
    // Its own library's type library, or else that of the other bitness.
    wchar_t path[MAX_PATH];
    DWORD size = sizeof(path);
    const auto read = [&](const wchar_t* platform) {
        return RegGetValueW(HKEY_CLASSES_ROOT, (LocaleKey(L"409") + platform).c_str(), nullptr, RRF_RT_REG_SZ,
                            nullptr, path, &size) == ERROR_SUCCESS;
    };
    const wchar_t* const own = sizeof(void*) == 8 ? L"\\win64" : L"\\win32";
    const wchar_t* const other = sizeof(void*) == 8 ? L"\\win32" : L"\\win64";
    REQUIRE((read(own) || read(other)));
    for (const wchar_t* platform : {own, other})
        REQUIRE(RegSetKeyValueW(HKEY_CLASSES_ROOT, (LocaleKey(L"0") + platform).c_str(), nullptr, REG_SZ,
                                path, size) == ERROR_SUCCESS);
}

MarshallerKey::~MarshallerKey() {
    if (!RunsUnderWine())
        return;
    RegDeleteTreeW(HKEY_CLASSES_ROOT, LocaleKey(L"0").c_str());
}
