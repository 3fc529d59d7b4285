#pragma once

#include "TypeLibrary.h"

// The four IDispatch methods of a dual interface, by its type information. Shared by all classes.

HRESULT DispatchGetTypeInfoCount(UINT* count) noexcept;
HRESULT DispatchGetTypeInfo(TypeInfoHolder& holder, UINT index, ITypeInfo** info) noexcept;
HRESULT DispatchGetIDsOfNames(TypeInfoHolder& holder, LPOLESTR* names, UINT count, DISPID* ids) noexcept;
HRESULT DispatchInvoke(TypeInfoHolder& holder, IDispatch* object, DISPID id, REFIID iid, WORD flags,
                       DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                       UINT* badArgument) noexcept;
