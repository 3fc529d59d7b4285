#pragma once

#include "common/com/ComPtr.h"

#include <windows.h>
#include <oaidl.h>

#include <string>
#include <vector>

/// Reads a type library member by member into comparable text.
/// A failing call is a failed assertion of the running test.

/// The library under test: the file named by the environment variable JOBOBJECTS_TLB, or else the module
/// "Tarnwick.dll" beside the test program. Does not register it.
ComPtr<ITypeLib> loadLibraryUnderTest();

ComPtr<ITypeInfo> typeNamed(ITypeLib& library, const std::string& name);
/// The virtual-table view of a dual interface; ITypeLib returns the dispatch view.
ComPtr<ITypeInfo> vtableView(ITypeInfo& dispatchView);

/// A copy of the attributes; its pointers are dangling.
TYPEATTR attributesOf(ITypeInfo& info);
TLIBATTR attributesOf(ITypeLib& library);
std::string guidText(const GUID& guid);

struct Documentation {
    std::string name;
    std::string help;
    std::string helpFile;
    DWORD helpContext;
};
Documentation documentationOf(ITypeInfo& info, MEMBERID member = MEMBERID_NIL);
Documentation documentationOf(ITypeLib& library);

/// One function as the type library stores it.
struct Function {
    /// "slot | DISPID | kind | name | parameters", as in ExpectedInterface.
    std::string row;
    /// "DISPID | kind | name | parameters -> result", for the dispatch view, which has no slots of its own.
    std::string dispatchRow;
    std::string name;
    std::string help;
    MEMBERID id;
    INVOKEKIND invokeKind;
    FUNCKIND functionKind;
    CALLCONV callingConvention;
    std::string result;
    WORD flags;
    SHORT optionalParameters;
};
Function functionAt(ITypeInfo& info, UINT index);
std::vector<Function> functionsOf(ITypeInfo& info);

/// Whether the type has a function of that DISPID and kind.
bool hasFunction(ITypeInfo& info, MEMBERID id, INVOKEKIND kind);
