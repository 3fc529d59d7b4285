#pragma once

#include "MemberNames.h"
#include "common/com/Bstr.h"
#include "common/com/ComPtr.h"

#include <windows.h>
#include <oaidl.h>

#include <atomic>

/// Loads the type library from a resource of the module's file (index 0: the first), or else from the ".tlb"
/// file beside it. path receives the path it was loaded from.
HRESULT LoadOwnTypeLibrary(unsigned resourceIndex, UniqueBstr& path, ComPtr<ITypeLib>& library) noexcept;

/// The type information of one interface, loaded on first use and kept until the library is unloaded.
/// Constant-initialised.
class TypeInfoHolder {
public:
    constexpr explicit TypeInfoHolder(const IID& iid) noexcept : m_iid(iid) {}

    /// No reference added: valid while the library is loaded.
    HRESULT Get(ITypeInfo** info) noexcept;

    /// Requires a successful Get. Null if the table cannot be made.
    const MemberNames* Names() noexcept;

private:
    HRESULT Load() noexcept;
    void Release() noexcept;

    const IID& m_iid;
    std::atomic<ITypeInfo*> m_info{nullptr};
    std::atomic<const MemberNames*> m_names{nullptr};
};
