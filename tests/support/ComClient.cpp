#include "tests/support/ComClient.h"

#include "tests/support/ProgramFolder.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

std::string Hex(HRESULT result) {
    char text[16];
    std::snprintf(text, sizeof(text), "0x%08lX", static_cast<unsigned long>(result));
    return text;
}

std::string Narrow(std::wstring_view text) {
    const int length = static_cast<int>(text.size());
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, narrow.data(), size, nullptr, nullptr);
    return narrow;
}

ComPtr<IPrintJob> CreatePrintJob() {
    return Create<IPrintJob>(__uuidof(PrintJob));
}
ComPtr<IJobContents> CreateJobContents() {
    return Create<IJobContents>(__uuidof(JobContents));
}
ComPtr<ICopyLines> CreateCopyLines() {
    return Create<ICopyLines>(__uuidof(CopyLines));
}
ComPtr<ICopyLine> CreateCopyLine() {
    return Create<ICopyLine>(__uuidof(CopyLine));
}
ComPtr<IWindowsPrintInfo> CreateWindowsPrintInfo() {
    return Create<IWindowsPrintInfo>(__uuidof(WindowsPrintInfo));
}
ComPtr<IPolicyResults> CreatePolicyResults() {
    return Create<IPolicyResults>(__uuidof(PolicyResults));
}
ComPtr<ICopyJob> CreateCopyJob() {
    return Create<ICopyJob>(__uuidof(CopyJob));
}
ComPtr<IScanJob> CreateScanJob() {
    return Create<IScanJob>(__uuidof(ScanJob));
}
ComPtr<IFaxJob> CreateFaxJob() {
    return Create<IFaxJob>(__uuidof(FaxJob));
}
ComPtr<ILogicalPrinter> CreateLogicalPrinter() {
    return Create<ILogicalPrinter>(__uuidof(LogicalPrinter));
}

void KeepForSchemas(std::wstring_view xml) {
    const char* folder = std::getenv("JOBOBJECTS_WRITTEN_XML");
    if (!folder)
        return;
    const std::string text = Narrow(xml);
    std::uint64_t hash = 0xCBF29CE484222325; // FNV-1a: equal texts share a file
    for (const char c : text)
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
    char name[32];
    std::snprintf(name, sizeof(name), "/%08lx%08lx.xml", static_cast<unsigned long>(hash >> 32),
                  static_cast<unsigned long>(hash & 0xFFFFFFFF));
    std::ofstream file(folder + std::string(name), std::ios::binary);
    file << text;
    file.close();
    REQUIRE(file.good());
}

std::wstring TakeErrorDescription() {
    ComPtr<IErrorInfo> info;
    if (GetErrorInfo(0, info.Put()) != S_OK)
        return L"<none>";
    UniqueBstr description;
    REQUIRE_HR(info->GetDescription(description.Put()), S_OK);
    return std::wstring(description.View());
}

HRESULT InvokeByName(IDispatch* object, const wchar_t* name, WORD flags, std::vector<VARIANT> arguments,
                     VARIANT* result, EXCEPINFO* exception) {
    DISPID id = DISPID_UNKNOWN;
    auto* names = const_cast<LPOLESTR>(name);
    REQUIRE_HR(object->GetIDsOfNames(IID_NULL, &names, 1, 0x0409, &id), S_OK);
    std::reverse(arguments.begin(), arguments.end());
    DISPID put = DISPID_PROPERTYPUT;
    const bool isPut = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    DISPPARAMS parameters{arguments.data(), isPut ? &put : nullptr, static_cast<UINT>(arguments.size()),
                          isPut ? 1u : 0u};
    return object->Invoke(id, IID_NULL, 0x0409, flags, &parameters, result, exception, nullptr);
}

HRESULT AskLibraryToUnload() {
    const HMODULE library = GetModuleHandleW(L"Tarnwick.dll");
    if (!library)
        return S_OK;
    using CanUnload = HRESULT(STDAPICALLTYPE*)();
    const FARPROC address = GetProcAddress(library, "DllCanUnloadNow");
    REQUIRE(address != nullptr);
    return reinterpret_cast<CanUnload>(reinterpret_cast<void*>(address))();
}

std::wstring ReadTestFile(const char* name) {
    std::ifstream file(TestDataFolder() / name, std::ios::binary);
    INFO(name);
    REQUIRE(file.good());
    const std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    const int length = static_cast<int>(bytes.size());
    const int size = MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes.data(), length, nullptr, 0);
    std::wstring text(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes.data(), length, text.data(), size);
    return text;
}
