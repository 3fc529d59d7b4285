#pragma once

#include "common/com/ComPtr.h"

#include "JobObjectClasses.h"

#include <array>
#include <string>
#include <string_view>

#include <oaidl.h>

/// A record of the registered library, used as scripts use it: by its programmatic identifier and by name.
class RecordObject {
public:
    /// The class whose XML has this root element; empty when there is none.
    static std::wstring ClassOfRoot(std::wstring_view root);

    /// Throws ToolError when the object cannot be created.
    explicit RecordObject(const std::wstring& className);

    /// Assigns Xml. Returns false, with the reason in Error, when the library refuses the text.
    bool PutXml(std::wstring_view xml);
    const std::wstring& Error() const noexcept { return m_error; }
    /// Throws ToolError when the record cannot write itself.
    std::wstring Xml();

    IDispatch* Get() const noexcept { return m_object.Get(); }

private:
    ComPtr<IDispatch> m_object;
    std::wstring m_error;
};

/// All creatable classes.
#define JOBOBJECTS_NAME(name, Interface) L## #name,
inline constexpr std::array ClassNames{JOBOBJECTS_CLASSES(JOBOBJECTS_NAME)};
#undef JOBOBJECTS_NAME

/// Calls a member by its identifier, with at most one argument. Returns the result, with the reason in error.
HRESULT InvokeMember(IDispatch* object, DISPID member, WORD flags, VARIANT* argument, VARIANT* result,
                     std::wstring& error);
