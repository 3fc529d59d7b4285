#include "TypeLibrary.h"

#include "ServerModule.h"
#include "ModulePath.h"
#include "common/com/ErrorReporting.h"

#include <memory>
#include <string>

namespace {

constexpr std::size_t MaxLibraryPath = 270;

/// Replaces the extension of the file name.
std::wstring WithExtension(std::wstring path, std::wstring_view extension) {
    const std::size_t dot = path.rfind(L'.');
    const std::size_t slash = path.rfind(L'\\');
    if (dot != std::wstring::npos && (slash == std::wstring::npos || dot > slash))
        path.erase(dot);
    return path.append(extension);
}

} // namespace

HRESULT LoadOwnTypeLibrary(unsigned resourceIndex, UniqueBstr& path, ComPtr<ITypeLib>& library) noexcept {
    return RunMethod(L"LoadOwnTypeLibrary", [&]() -> HRESULT {
        const std::wstring modulePath = OwnModulePath();
        std::wstring libraryPath = modulePath;
        if (resourceIndex != 0)
            libraryPath += L"\\" + std::to_wstring(resourceIndex);
        if (libraryPath.size() >= MaxLibraryPath)
            return FailWithoutInfo(E_FAIL);
        if (FAILED(LoadTypeLibEx(libraryPath.c_str(), REGKIND_NONE, library.Put()))) {
            libraryPath = WithExtension(modulePath, L".tlb");
            const HRESULT result = LoadTypeLibEx(libraryPath.c_str(), REGKIND_NONE, library.Put());
            if (FAILED(result))
                return FailWithoutInfo(result);
        }
        path = UniqueBstr(libraryPath);
        return S_OK;
    });
}

HRESULT TypeInfoHolder::Get(ITypeInfo** info) noexcept {
    if (!m_info) {
        const HRESULT result = Load();
        if (FAILED(result))
            return result;
    }
    *info = m_info;
    return S_OK;
}

HRESULT TypeInfoHolder::Load() noexcept {
    UniqueBstr path;
    ComPtr<ITypeLib> library;
    ComPtr<ITypeInfo> info;
    HRESULT result = LoadOwnTypeLibrary(0, path, library);
    if (SUCCEEDED(result))
        result = library->GetTypeInfoOfGuid(m_iid, info.Put());
    if (FAILED(result))
        return result;

    // Before the pointer is published: a published pointer is then always released.
    result = OwnModule().AddTerminationCallback(
        [](void* context) noexcept { static_cast<TypeInfoHolder*>(context)->Release(); }, this);
    ITypeInfo* none = nullptr;
    if (SUCCEEDED(result) && m_info.compare_exchange_strong(none, info.Get()))
        info.Detach();
    return result;
}

void TypeInfoHolder::Release() noexcept {
    delete m_names.exchange(nullptr);
    if (ITypeInfo* held = m_info.exchange(nullptr))
        held->Release();
}

const MemberNames* TypeInfoHolder::Names() noexcept {
    if (!m_names) {
        try {
            auto made = std::make_unique<const MemberNames>(*m_info);
            const MemberNames* none = nullptr;
            if (m_names.compare_exchange_strong(none, made.get()))
                static_cast<void>(made.release()); // m_names owns it now
        } catch (...) {
            // Late binding works without the table, only slower. The next call tries again.
        }
    }
    return m_names;
}
