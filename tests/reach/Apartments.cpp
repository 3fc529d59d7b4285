#include "Apartments.h"

#include "tests/support/ComClient.h"

#include <exception>

namespace {

constexpr const wchar_t* libraryId = L"{D47A619E-7CB5-4B98-9A01-93662E11761E}";

std::wstring NeutralLocaleKey() {
    return std::wstring(L"TypeLib\\") + libraryId + L"\\1.0\\0";
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
    GUID id;
    REQUIRE_HR(CLSIDFromString(libraryId, &id), S_OK);
    UniqueBstr path;
    REQUIRE_HR(QueryPathOfRegTypeLib(id, 1, 0, 0x0409, path.Put()), S_OK);
    const std::wstring key = NeutralLocaleKey() + L"\\win32";
    // The BSTR's length may include a terminator.
    const std::wstring text = path.Get();
    REQUIRE(RegSetKeyValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, REG_SZ, text.c_str(),
                            static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))) == ERROR_SUCCESS);
}

MarshallerKey::~MarshallerKey() {
    RegDeleteTreeW(HKEY_CLASSES_ROOT, NeutralLocaleKey().c_str());
}
