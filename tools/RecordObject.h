#pragma once

#include "common/com/Bstr.h"
#include "common/com/ComPtr.h"

#include "JobObjectClasses.h"

#include <array>
#include <string>
#include <string_view>

#include <oaidl.h>

/// A record of the registered library, used as scripts do: by ProgID and member names.
class RecordObject {
public:
    /// The class whose XML has this root element; empty if there is none.
    static std::wstring ClassOfRoot(std::wstring_view root);

    /// Throws ToolError if the object cannot be created.
    explicit RecordObject(const std::wstring& className);
    /// Another reference to an object that exists.
    explicit RecordObject(IDispatch* object);

    /// Assigns Xml. If the library refuses the text, returns false and sets Error.
    bool PutXml(const UniqueBstr& xml);
    const std::wstring& Error() const noexcept { return m_error; }
    /// Throws ToolError if the record cannot write its XML.
    UniqueBstr Xml();

    IDispatch* Get() const noexcept { return m_object.Get(); }

private:
    ComPtr<IDispatch> m_object;
    DISPID m_xml = DISPID_UNKNOWN;
    std::wstring m_error;
};

/// All creatable classes.
#define JOBOBJECTS_NAME(name, Interface) L## #name,
inline constexpr std::array ClassNames{JOBOBJECTS_CLASSES(JOBOBJECTS_NAME)};
#undef JOBOBJECTS_NAME

/// Calls a member by DISPID, with at most one argument. On failure sets `error` to the reason.
HRESULT InvokeMember(IDispatch* object, DISPID member, WORD flags, VARIANT* argument, VARIANT* result,
                     std::wstring& error);
