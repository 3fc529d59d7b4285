#include "tests/support/ComClient.h"
#include "tests/support/ProgramFolder.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>
#include <vector>

// The assembly's manifest repeats the classes and interfaces of the type library. The tests compare them.

namespace {

using Lines = std::vector<std::string>;

constexpr const char* LibraryId = "{D47A619E-7CB5-4B98-9A01-93662E11761E}";

std::string ReadManifest() {
    std::ifstream file(BesideProgram("JobObjects.manifest"), std::ios::binary);
    REQUIRE(file.good());
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string Attribute(const std::string& element, const std::string& name) {
    std::smatch match;
    return std::regex_search(element, match, std::regex("\\s" + name + "=\"([^\"]*)\"")) ? match[1].str()
                                                                                         : "";
}

/// Describes each matching element of the manifest as a line; sorted.
template<class Describe>
Lines Collect(const std::string& manifest, const char* pattern, Describe describe) {
    const std::regex elements(pattern);
    Lines lines;
    for (std::sregex_iterator each(manifest.begin(), manifest.end(), elements), end; each != end; ++each)
        lines.push_back(describe(*each));
    std::sort(lines.begin(), lines.end());
    return lines;
}

Lines ManifestClasses(const std::string& manifest) {
    return Collect(manifest, R"(<comClass\b([^>]*)>\s*<progid>([^<]*)</progid>\s*</comClass>)",
                   [](const std::smatch& match) {
                       const std::string element = match[1].str();
                       return Attribute(element, "clsid") + " " + Attribute(element, "description") + " " +
                              Attribute(element, "threadingModel") + " " + Attribute(element, "tlbid") + " " +
                              Attribute(element, "progid") + " " + match[2].str();
                   });
}

Lines ManifestInterfaces(const std::string& manifest) {
    return Collect(manifest, "<comInterfaceExternalProxyStub\\b([^>]*)/>", [](const std::smatch& match) {
        const std::string element = match[1].str();
        return Attribute(element, "iid") + " " + Attribute(element, "name") + " " +
               Attribute(element, "tlbid") + " " + Attribute(element, "baseInterface") + " " +
               Attribute(element, "proxyStubClsid32");
    });
}

std::string GuidText(const GUID& guid) {
    wchar_t text[39];
    REQUIRE(StringFromGUID2(guid, text, 39) == 39);
    return Narrow(text);
}

struct TypeLibraryLines {
    Lines classes;
    Lines interfaces;
};

void Describe(ITypeLib* library, UINT index, TypeLibraryLines& lines) {
    ComPtr<ITypeInfo> info;
    REQUIRE_HR(library->GetTypeInfo(index, info.Put()), S_OK);
    UniqueBstr name, help;
    REQUIRE_HR(library->GetDocumentation(static_cast<INT>(index), name.Put(), help.Put(), nullptr, nullptr),
               S_OK);
    TYPEATTR* attributes = nullptr;
    REQUIRE_HR(info->GetTypeAttr(&attributes), S_OK);
    const std::string id = GuidText(attributes->guid);
    const TYPEKIND kind = attributes->typekind;
    info->ReleaseTypeAttr(attributes);

    const std::string progId = "Corvane." + Narrow(name.View());
    if (kind == TKIND_COCLASS)
        lines.classes.push_back(id + " " + Narrow(help.View()) + " Apartment " + LibraryId + " " + progId +
                                ".1 " + progId);
    else
        lines.interfaces.push_back(id + " " + Narrow(name.View()) + " " + LibraryId + " " +
                                   GuidText(IID_IDispatch) + " {00020424-0000-0000-C000-000000000046}");
}

TypeLibraryLines ReadTypeLibrary() {
    ComPtr<ITypeLib> library;
    REQUIRE_HR(LoadTypeLibEx(BesideProgram("Tarnwick.dll").c_str(), REGKIND_NONE, library.Put()), S_OK);
    TypeLibraryLines lines;
    for (UINT i = 0; i < library->GetTypeInfoCount(); ++i)
        Describe(library.Get(), i, lines);
    std::sort(lines.classes.begin(), lines.classes.end());
    std::sort(lines.interfaces.begin(), lines.interfaces.end());
    return lines;
}

} // namespace

TEST_CASE("Manifest_lists_the_classes_of_the_type_library") {
    const TypeLibraryLines expected = ReadTypeLibrary();
    REQUIRE(expected.classes.size() == 10);
    CHECK(ManifestClasses(ReadManifest()) == expected.classes);
}

TEST_CASE("Manifest_lists_the_interfaces_of_the_type_library") {
    const TypeLibraryLines expected = ReadTypeLibrary();
    REQUIRE(expected.interfaces.size() == 10);
    CHECK(ManifestInterfaces(ReadManifest()) == expected.interfaces);
}

TEST_CASE("Manifest_lists_the_type_library") {
    const std::string manifest = ReadManifest();
    std::smatch match;
    REQUIRE(std::regex_search(manifest, match,
                              std::regex("<file name=\"Tarnwick.dll\">\\s*<typelib\\b([^>]*)/>")));
    CHECK(Attribute(match[1].str(), "tlbid") == LibraryId);
    CHECK(Attribute(match[1].str(), "version") == "1.0");
}
