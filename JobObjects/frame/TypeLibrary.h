#pragma once

#include "MemberNames.h"
#include "common/com/Bstr.h"
#include "common/com/ComPtr.h"

#include <windows.h>
#include <oaidl.h>

#include <atomic>

/// Loads the library's type library: from the resource of the given index in the module's own file
/// (0: the file as it is), or else from the file of the same name with the extension ".tlb". Gives the path
/// it was loaded from.
HRESULT LoadOwnTypeLibrary(unsigned resourceIndex, UniqueBstr& path, ComPtr<ITypeLib>& library) noexcept;

/// The type information of one of the library's interfaces, loaded on first use and kept until the library
/// is unloaded. Constant-initialised, one for each interface.
class TypeInfoHolder {
public:
    constexpr explicit TypeInfoHolder(const IID& iid) noexcept : m_iid(iid) {}

    /// Borrowed: valid as long as the library is loaded.
    HRESULT Get(ITypeInfo** info) noexcept;

    /// The member names of loaded type information; null when there is no memory for them.
    const MemberNames* Names() noexcept;

private:
    HRESULT Load() noexcept;
    void Release() noexcept;

    const IID& m_iid;
    std::atomic<ITypeInfo*> m_info{nullptr};
    std::atomic<const MemberNames*> m_names{nullptr};
};
