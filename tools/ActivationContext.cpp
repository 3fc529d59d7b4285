#include "ActivationContext.h"

#include "Installation.h"

#include "JobObjects.h"

namespace {

/// An object that describes the source of a context. `folder` and the source must outlive it.
ACTCTXW SourceOf(const std::wstring& source, const std::wstring& folder) {
    ACTCTXW context{};
    context.cbSize = sizeof(context);
    context.dwFlags = ACTCTX_FLAG_ASSEMBLY_DIRECTORY_VALID;
    context.lpSource = source.c_str();
    context.lpAssemblyDirectory = folder.c_str();
    return context;
}

/// A program's manifest is its resource of this number.
bool HasManifestResource(const std::wstring& program) {
    HMODULE module = LoadLibraryExW(program.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    if (!module)
        return false;
    const bool found = FindResourceW(module, MAKEINTRESOURCEW(1), MAKEINTRESOURCEW(24)) != nullptr;
    FreeLibrary(module);
    return found;
}

} // namespace

ActivationContext::~ActivationContext() {
    if (m_cookie != 0)
        DeactivateActCtx(0, m_cookie);
    if (m_context != INVALID_HANDLE_VALUE)
        ReleaseActCtx(m_context);
}

ActivationContext::Result ActivationContext::OfProgram(const std::wstring& program) {
    if (HasManifestResource(program)) {
        const std::wstring folder = FolderOf(program);
        ACTCTXW source = SourceOf(program, folder);
        source.dwFlags |= ACTCTX_FLAG_RESOURCE_NAME_VALID;
        source.lpResourceName = MAKEINTRESOURCEW(1);
        return Activate(source) ? Result::Active : Result::Failed;
    }
    const std::wstring beside = program + L".manifest";
    if (!FileExists(beside))
        return Result::NoManifest;
    return OfFile(beside) ? Result::Active : Result::Failed;
}

bool ActivationContext::OfFile(const std::wstring& manifest) {
    const std::wstring folder = FolderOf(manifest);
    return Activate(SourceOf(manifest, folder));
}

bool ActivationContext::Activate(const ACTCTXW& source) {
    m_context = CreateActCtxW(&source);
    return m_context != INVALID_HANDLE_VALUE && ActivateActCtx(m_context, &m_cookie);
}

bool ActivationContext::SelectsLibrary() {
    ACTCTX_SECTION_KEYED_DATA data{};
    data.cbSize = sizeof(data);
    return FindActCtxSectionGuid(0, nullptr, ACTIVATION_CONTEXT_SECTION_COM_SERVER_REDIRECTION,
                                 &CLSID_PrintJob, &data);
}
