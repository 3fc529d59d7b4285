#pragma once

#include "common/com/Bstr.h"
#include "common/com/ComPtr.h"

#include "JobObjects.h"

#include <catch2/catch.hpp>

#include <string>
#include <string_view>
#include <vector>

// Helpers for client tests. These know the library through its interfaces and the registry only; from its
// sources they use UniqueBstr and ComPtr alone.

/// "0x80004005". Comparing results as text makes failures readable.
std::string Hex(HRESULT result);
#define REQUIRE_HR(call, expected) REQUIRE(Hex(call) == Hex(expected))
#define CHECK_HR(call, expected) CHECK(Hex(call) == Hex(expected))

/// UTF-8, because Catch does not print wide text.
std::string Narrow(std::wstring_view text);
#define CHECK_TEXT(actual, expected) CHECK(Narrow(actual) == Narrow(expected))
#define REQUIRE_TEXT(actual, expected) REQUIRE(Narrow(actual) == Narrow(expected))

/// A new object from CoCreateInstance; fails the test on an error.
template<class Interface>
ComPtr<Interface> Create(REFCLSID classId) {
    ComPtr<Interface> object;
    REQUIRE_HR(
        CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface), object.PutVoid()),
        S_OK);
    return object;
}

ComPtr<IPrintJob> CreatePrintJob();
ComPtr<IJobContents> CreateJobContents();
ComPtr<ICopyLines> CreateCopyLines();
ComPtr<ICopyLine> CreateCopyLine();
ComPtr<IWindowsPrintInfo> CreateWindowsPrintInfo();
ComPtr<IPolicyResults> CreatePolicyResults();
ComPtr<ICopyJob> CreateCopyJob();
ComPtr<IScanJob> CreateScanJob();
ComPtr<IFaxJob> CreateFaxJob();
ComPtr<ILogicalPrinter> CreateLogicalPrinter();

/// The value of a text property, S_OK required. Only for XML that embeds another component's text, which no
/// schema describes; otherwise use Text.
template<class Interface>
std::wstring UncheckedText(const ComPtr<Interface>& object,
                           HRESULT (STDMETHODCALLTYPE Interface::*getter)(BSTR*)) {
    UniqueBstr value;
    REQUIRE_HR((object.Get()->*getter)(value.Put()), S_OK);
    REQUIRE(value.Get() != nullptr);
    return std::wstring(value.View());
}

/// Saves a record's XML for the schema test: one file per distinct text, in the folder that ctest sets in the
/// environment. Does nothing without a folder.
void KeepForSchemas(std::wstring_view xml);

template<class Interface>
bool GivesXml(HRESULT (STDMETHODCALLTYPE Interface::*getter)(BSTR*)) {
    bool givesXml = false;
    if constexpr (requires { &Interface::get_Xml; })
        givesXml = getter == &Interface::get_Xml;
    if constexpr (requires { &Interface::get_PageCounterInfoXml; })
        givesXml = givesXml || getter == &Interface::get_PageCounterInfoXml;
    if constexpr (requires { &Interface::get_DriverInfoXml; })
        givesXml = givesXml || getter == &Interface::get_DriverInfoXml;
    return givesXml;
}

/// The value of a text property, S_OK required: Text(job, &IPrintJob::get_Xml). Saves XML for the schema
/// test.
template<class Interface>
std::wstring Text(const ComPtr<Interface>& object, HRESULT (STDMETHODCALLTYPE Interface::*getter)(BSTR*)) {
    std::wstring text = UncheckedText(object, getter);
    if (GivesXml(getter))
        KeepForSchemas(text);
    return text;
}

/// The value of any other property, S_OK required: Value(job, &IPrintJob::get_JobSize).
template<class Interface, class Type>
Type Value(const ComPtr<Interface>& object, HRESULT (STDMETHODCALLTYPE Interface::*getter)(Type*)) {
    Type value;
    memset(&value, 0xCD, sizeof(value)); // garbage that the getter must replace
    REQUIRE_HR((object.Get()->*getter)(&value), S_OK);
    return value;
}

/// Sets a text property and returns the result: Put(job, &IPrintJob::put_Xml, text).
template<class Interface>
HRESULT Put(const ComPtr<Interface>& object, HRESULT (STDMETHODCALLTYPE Interface::*putter)(BSTR),
            std::wstring_view text) {
    return (object.Get()->*putter)(UniqueBstr(text).Get());
}

/// Takes the calling thread's error information and returns its description; L"<none>" if there is none.
std::wstring TakeErrorDescription();

/// IDispatch::Invoke by name, with arguments in natural order. The result and the exception are optional.
HRESULT InvokeByName(IDispatch* object, const wchar_t* name, WORD flags, std::vector<VARIANT> arguments = {},
                     VARIANT* result = nullptr, EXCEPINFO* exception = nullptr);

/// The result of DllCanUnloadNow; S_OK if the library is not loaded.
HRESULT AskLibraryToUnload();

/// A file of tests/data as text (UTF-8, no byte-order mark).
std::wstring ReadTestFile(const char* name);
