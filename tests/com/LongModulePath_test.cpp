#include "tests/support/ComClient.h"
#include "tests/support/Library.h"
#include "tests/support/RegistryTree.h"

// A module path of 260 characters or more: objects can be created and used through their vtables, but the
// type library, which is loaded by this path, is unavailable.

namespace {

constexpr std::size_t FirstTooLong = 260;

/// Loads a copy of the library from a path of the given length.
class DeepCopy {
public:
    explicit DeepCopy(std::size_t length) {
        wchar_t temp[MAX_PATH + 1];
        REQUIRE(GetTempPathW(MAX_PATH + 1, temp) != 0);
        wchar_t folder[MAX_PATH];
        REQUIRE(GetTempFileNameW(temp, L"job", 0, folder) != 0);
        DeleteFileW(folder);
        AddFolder(folder);
        // Folder names have a shorter limit than paths.
        constexpr std::size_t longestName = 100;
        const std::size_t total = length - std::wcslen(L"\\Tarnwick.dll");
        while (m_folders.back().size() < total) {
            std::size_t rest = total - m_folders.back().size() - 1;
            if (rest > longestName)
                rest = std::min(longestName, rest - 2); // room for a separator and the next name
            AddFolder(m_folders.back() + L"\\" + std::wstring(rest, L'd'));
        }
        REQUIRE(Path().size() == length);
        REQUIRE(CopyFileW(LibraryPath().c_str(), (Prefix + Path()).c_str(), TRUE));
        m_module = LoadLibraryW((Prefix + Path()).c_str());
        REQUIRE(m_module != nullptr);
    }
    DeepCopy(const DeepCopy&) = delete;
    DeepCopy& operator=(const DeepCopy&) = delete;
    ~DeepCopy() {
        FreeLibrary(m_module);
        DeleteFileW((Prefix + Path()).c_str());
        for (; !m_folders.empty(); m_folders.pop_back())
            RemoveDirectoryW((Prefix + m_folders.back()).c_str());
    }

    std::wstring Path() const { return m_folders.back() + L"\\Tarnwick.dll"; }

    ComPtr<ICopyLine> NewCopyLine() const {
        const auto getClassObject =
            Find<HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**)>("DllGetClassObject");
        ComPtr<IClassFactory> factory;
        REQUIRE_HR(getClassObject(__uuidof(CopyLine), IID_IClassFactory, factory.PutVoid()), S_OK);
        ComPtr<ICopyLine> line;
        REQUIRE_HR(factory->CreateInstance(nullptr, __uuidof(ICopyLine), line.PutVoid()), S_OK);
        return line;
    }
    HRESULT Register() const { return Find<HRESULT(STDAPICALLTYPE*)()>("DllRegisterServer")(); }

private:
    /// Lifts the system's limit on path lengths.
    static inline const std::wstring Prefix = L"\\\\?\\";

    void AddFolder(const std::wstring& path) {
        INFO(Narrow(path));
        REQUIRE(CreateDirectoryW((Prefix + path).c_str(), nullptr));
        m_folders.push_back(path);
    }
    template<class Function>
    Function Find(const char* name) const {
        const FARPROC address = GetProcAddress(m_module, name);
        REQUIRE(address != nullptr);
        return reinterpret_cast<Function>(reinterpret_cast<void*>(address));
    }

    std::vector<std::wstring> m_folders;
    HMODULE m_module = nullptr;
};

HRESULT AskForXml(ICopyLine* line) {
    wchar_t name[] = L"Xml";
    LPOLESTR names = name;
    DISPID id = 0;
    return line->GetIDsOfNames(IID_NULL, &names, 1, 0x0409, &id);
}

} // namespace

TEST_CASE("ModulePath_of_260_characters_is_too_long_for_late_binding_and_registration") {
    constexpr auto insufficientBuffer = static_cast<HRESULT>(0x8007007A);
    for (const std::size_t length : {FirstTooLong, FirstTooLong + 1, FirstTooLong + 140}) {
        INFO(length << " characters");
        const DeepCopy copy(length);
        const auto line = copy.NewCopyLine();
        CHECK_HR(line->put_Sheets(7), S_OK);
        CHECK(Value(line, &ICopyLine::get_Sheets) == 7);
        CHECK_HR(AskForXml(line.Get()), insufficientBuffer);
        ComPtr<ITypeInfo> info;
        CHECK_HR(line->GetTypeInfo(0, 0x0409, info.Put()), insufficientBuffer);
        CHECK_FALSE(info);
        const PrivateClassesRoot root;
        CHECK_HR(copy.Register(), insufficientBuffer);
        CHECK(ReadRegistryTree(root.Key()).empty());
    }
}

TEST_CASE("ModulePath_of_259_characters_allows_late_binding") {
    const DeepCopy copy(FirstTooLong - 1);
    const auto line = copy.NewCopyLine();
    CHECK_HR(AskForXml(line.Get()), S_OK);
}
