#pragma once

#include "tests/support/ComClient.h"

// Helpers for the tests of the records.

/// "<PrintJob Version="4.1">elements</PrintJob>": a record of a chosen version begins with such a document.
std::wstring RecordText(std::wstring_view root, std::wstring_view version, std::wstring_view elements = {});

/// A new record that has read the text, S_OK required.
ComPtr<IPrintJob> PrintJobFrom(std::wstring_view xml);
/// A print job of a version with these elements and an empty JobContents.
ComPtr<IPrintJob> PrintJobOfVersion(std::wstring_view version, std::wstring_view elements = {});

DATE MakeDate(WORD year, WORD month, WORD day, WORD hour = 0, WORD minute = 0, WORD second = 0);
/// "2010-03-04T05:06:07".
std::wstring DateText(DATE date);
/// Whether a date is within some seconds of the clock.
bool IsLocalNow(DATE date);
bool IsUtcNow(DATE date);

int Occurrences(std::wstring_view text, std::wstring_view piece);
#define CHECK_HAS(text, piece)                                                                               \
    do {                                                                                                     \
        INFO(Narrow(text));                                                                                  \
        CHECK(Occurrences(text, piece) == 1);                                                                \
    } while (false)
#define CHECK_HAS_NOT(text, piece)                                                                           \
    do {                                                                                                     \
        INFO(Narrow(text));                                                                                  \
        CHECK(Occurrences(text, piece) == 0);                                                                \
    } while (false)

/// A property by its accessors and its name, for tables of properties.
template<class Interface, class Type>
struct Property {
    const wchar_t* name;
    HRESULT (STDMETHODCALLTYPE Interface::*get)(Type*);
    HRESULT (STDMETHODCALLTYPE Interface::*put)(Type);
};
#define PROPERTY(Interface, Name) {L"" #Name, &Interface::get_##Name, &Interface::put_##Name}

/// Checks that the text properties are stored independently.
template<class Interface, std::size_t count>
void CheckTextProperties(const ComPtr<Interface>& record,
                         const Property<Interface, BSTR> (&properties)[count]) {
    for (const auto& property : properties)
        CHECK_HR(Put(record, property.put, std::wstring(L"<&> \u00e4 of ") + property.name), S_OK);
    for (const auto& property : properties) {
        INFO(Narrow(property.name));
        CHECK_TEXT(Text(record, property.get), std::wstring(L"<&> \u00e4 of ") + property.name);
    }
}

/// Checks that the number properties are stored independently.
template<class Interface, std::size_t count>
void CheckNumberProperties(const ComPtr<Interface>& record,
                           const Property<Interface, LONG> (&properties)[count]) {
    LONG number = -7;
    for (const auto& property : properties)
        CHECK_HR((record.Get()->*property.put)(number++), S_OK);
    number = -7;
    for (const auto& property : properties) {
        INFO(Narrow(property.name));
        CHECK(Value(record, property.get) == number++);
    }
}
