#include "tests/support/LogSession.h"

#include <cstdio>

// A copy of the library in another folder uses the catalogue there, if any. The tests create objects through
// its DllGetClassObject, not through the registered library.

namespace {

constexpr wchar_t Head[] = L"<JobAttributes>";
constexpr wchar_t Papers[] = L"<PaperSizes><PaperSize DbId=\"1\" Default=\"true\"><PaperDimensions><X>10</X>"
                             L"<Y>20</Y></PaperDimensions><PaperNames><PaperName Default=\"true\">Card"
                             L"</PaperName></PaperNames></PaperSize></PaperSizes>";
constexpr wchar_t Pairs[] = L"<PageAttributePairs><PageAttributePair><First DbId=\"1\" Default=\"true\">One"
                            L"</First><Second DbId=\"2\" Default=\"false\">Two</Second></PageAttributePair>"
                            L"</PageAttributePairs>";
constexpr wchar_t Attributes[] = L"<PageAttributes/>";
constexpr wchar_t Finishings[] = L"<FinishingAttributes/>";
constexpr wchar_t Pdls[] = L"<Pdls><Pdl DbId=\"7\" Default=\"true\">Raster</Pdl></Pdls>";
constexpr wchar_t Tail[] = L"</JobAttributes>";

std::wstring RegisteredFile() {
    wchar_t path[MAX_PATH];
    DWORD size = sizeof(path);
    REQUIRE(RegGetValueW(HKEY_CLASSES_ROOT, L"CLSID\\{B277E8AC-06C2-4643-A78C-34A04147E8D5}\\InprocServer32",
                         nullptr, RRF_RT_REG_SZ, nullptr, path, &size) == ERROR_SUCCESS);
    return path;
}

std::wstring FileNotFoundText() {
    wchar_t text[256];
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS |
                                      FORMAT_MESSAGE_MAX_WIDTH_MASK,
                                  nullptr, ERROR_FILE_NOT_FOUND, 0, text, 256, nullptr);
    while (length > 0 && text[length - 1] == L' ')
        --length;
    REQUIRE(length > 0);
    return std::wstring(text, length);
}

/// Loads a copy of the library from the session's folder.
class LibraryCopy {
public:
    explicit LibraryCopy(const LogSession& session)
        : m_file(session.Folder().File(L"Tarnwick.dll")),
          m_catalogue(session.Folder().File(L"JobAttributes.xml")) {
        REQUIRE(CopyFileW(RegisteredFile().c_str(), m_file.c_str(), TRUE));
    }
    ~LibraryCopy() {
        if (m_module)
            FreeLibrary(m_module);
    }
    LibraryCopy(const LibraryCopy&) = delete;
    LibraryCopy& operator=(const LibraryCopy&) = delete;

    const std::wstring& CataloguePath() const { return m_catalogue; }

    void WriteCatalogue(const std::wstring& text) const {
        std::FILE* file = _wfopen(m_catalogue.c_str(), L"wb");
        REQUIRE(file != nullptr);
        const std::string bytes = Narrow(text);
        REQUIRE(std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size());
        std::fclose(file);
    }

    ComPtr<ICopyLine> CreateCopyLine() {
        if (!m_module)
            m_module = LoadLibraryW(m_file.c_str());
        REQUIRE(m_module != nullptr);
        using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
        const auto getClassObject = reinterpret_cast<GetClassObject>(
            reinterpret_cast<void*>(GetProcAddress(m_module, "DllGetClassObject")));
        REQUIRE(getClassObject != nullptr);
        ComPtr<IClassFactory> factory;
        REQUIRE_HR(getClassObject(__uuidof(CopyLine), IID_IClassFactory, factory.PutVoid()), S_OK);
        ComPtr<ICopyLine> line;
        REQUIRE_HR(factory->CreateInstance(nullptr, __uuidof(ICopyLine), line.PutVoid()), S_OK);
        return line;
    }

private:
    std::wstring m_file;
    std::wstring m_catalogue;
    HMODULE m_module = nullptr;
};

/// Looks the paper "Card" up with this catalogue. Returns the log and the code.
std::wstring LookUp(const std::wstring& catalogue, LONG expectedCode) {
    LogSession session;
    session.Enable();
    LibraryCopy library(session);
    library.WriteCatalogue(catalogue);
    const auto line = library.CreateCopyLine();
    REQUIRE_HR(Put(line, &ICopyLine::put_PaperSize, L"card"), S_OK);
    CHECK(Value(line, &ICopyLine::get_DBPaperSize) == expectedCode);
    return session.TakeText();
}

const std::wstring Unresolved = L"Could not resolve PaperSize entry for 'card'.\r\n";

} // namespace

TEST_CASE("Log_catalogue_in_the_library_s_folder_is_used") {
    CHECK_TEXT(LookUp(std::wstring(Head) + Papers + Pairs + Attributes + Finishings + Pdls + Tail, 1), L"");
}

TEST_CASE("Log_missing_catalogue_is_logged_at_each_call_and_read_once_it_exists") {
    LogSession session;
    session.Enable();
    LibraryCopy library(session);
    const auto line = library.CreateCopyLine();
    REQUIRE_HR(Put(line, &ICopyLine::put_PaperSize, L"card"), S_OK);
    const std::wstring failed = L"Failed to load job attributes xml file '" + library.CataloguePath() +
                                L"'. " + FileNotFoundText() + L"\r\n";
    for (int i = 0; i < 2; ++i) {
        CHECK(Value(line, &ICopyLine::get_DBPaperSize) == 0);
        CHECK_TEXT(session.TakeText(), failed + Unresolved);
    }
    library.WriteCatalogue(std::wstring(Head) + Papers + Pairs + Attributes + Finishings + Pdls + Tail);
    CHECK(Value(line, &ICopyLine::get_DBPaperSize) == 1);
    CHECK_TEXT(session.TakeText(), L"");

    // Read once: later changes of the file have no effect in this process.
    library.WriteCatalogue(L"");
    CHECK(Value(line, &ICopyLine::get_DBPaperSize) == 1);
    CHECK_TEXT(session.TakeText(), L"");
}

TEST_CASE("Log_broken_catalogue_is_corrupt") {
    CHECK_TEXT(LookUp(L"<JobAttributes><PaperSizes>", 0),
               L"Job attributes xml file is corrupt.\r\n" + Unresolved);
    CHECK_TEXT(LookUp(L"no markup", 0), L"Job attributes xml file is corrupt.\r\n" + Unresolved);
}

TEST_CASE("Log_missing_section_of_the_catalogue_is_named") {
    const auto missing = [](const wchar_t* name) {
        return L"Missing '" + std::wstring(name) + L"' xml element.\r\n";
    };
    std::wstring catalogue = Head;
    CHECK_TEXT(LookUp(catalogue + Pairs + Attributes + Finishings + Pdls + Tail, 0),
               missing(L"PaperSizes") + Unresolved);
    catalogue += Papers; // used despite later errors
    CHECK_TEXT(LookUp(catalogue + Tail, 1), missing(L"PageAttributePairs"));
    catalogue += Pairs;
    CHECK_TEXT(LookUp(catalogue + Tail, 1), missing(L"PageAttributes"));
    catalogue += Attributes;
    CHECK_TEXT(LookUp(catalogue + Tail, 1), missing(L"FinishingAttributes"));
    catalogue += Finishings;
    CHECK_TEXT(LookUp(catalogue + Tail, 1), missing(L"Pdls"));
    CHECK_TEXT(LookUp(std::wstring(Head) + Pdls + Papers + Pairs + Attributes + Finishings + Tail, 1),
               missing(L"Pdls"));
}

TEST_CASE("Log_incomplete_paper_sizes_of_the_catalogue_are_named") {
    const std::wstring rest = std::wstring(Pairs) + Attributes + Finishings + Pdls + Tail;
    CHECK_TEXT(LookUp(std::wstring(Head) +
                          L"<PaperSizes><PaperSize DbId=\"3\"><PaperNames><PaperName>Card</PaperName>"
                          L"</PaperNames></PaperSize></PaperSizes>" +
                          rest,
                      3),
               L"Missing 'PaperDimensions' xml element.\r\n");
    CHECK_TEXT(LookUp(std::wstring(Head) +
                          L"<PaperSizes><PaperSize DbId=\"3\"><PaperDimensions/></PaperSize></PaperSizes>" +
                          rest,
                      0),
               L"Missing 'PaperNames' xml element.\r\n" + Unresolved);
}

TEST_CASE("Log_unresolved_words_and_codes_are_named") {
    LogSession session;
    session.Enable();
    const auto line = CreateCopyLine();
    const auto contents = CreateJobContents();
    Put(line, &ICopyLine::put_PaperSize, L"Napkin");
    Value(line, &ICopyLine::get_DBPaperSize);
    CHECK_TEXT(session.TakeText(), L"Could not resolve PaperSize entry for 'Napkin'.\r\n");
    Put(line, &ICopyLine::put_Attributes, L"Shiny,Red");
    Value(line, &ICopyLine::get_DBAttributes);
    CHECK_TEXT(session.TakeText(), L"Supplied PageAttributes 'Shiny,Red' did not match any attributes.\r\n");
    Put(contents, &IJobContents::put_JobFinishing, L"Glue");
    Value(contents, &IJobContents::get_DBFinishing);
    CHECK_TEXT(session.TakeText(), L"Supplied JobFinishing 'Glue' did not match any finishing options.\r\n");
    Put(contents, &IJobContents::put_JobPdl, L"Braille");
    Value(contents, &IJobContents::get_DBPdl);
    CHECK_TEXT(session.TakeText(), L"Supplied JobPdl 'Braille' was not found.\r\n");

    CHECK_HR(contents->GenerateContentsFromDBInfo(UniqueBstr(L"0,1,1,1,5;1,1,1,1,0;1,1,1,1,1073741824").Get(),
                                                  1, 1, 4095, 1 << 30),
             S_OK);
    CHECK_TEXT(session.TakeText(),
               L"Supplied JobPdl DB id '0xfff' was invalid. Using Default.\r\n"
               L"Supplied JobFinishing DB id '0x40000000' was invalid.\r\n"
               L"DB CopyLine string '0,1,1,1,5' is invalid.\r\n"
               L"DB CopyLine string '1,1,1,1,0' is invalid.\r\n"
               L"Supplied DB PageAttributes id '0x40000000' did not match any attributes.\r\n");

    CHECK_HR(
        contents->GenerateCopyLineFromPageCounterInfo(UniqueBstr(L"A4,Duplex,simplex").Get(), 1, 0, 0, 1),
        S_OK);
    CHECK_TEXT(session.TakeText(),
               L"Both attributes of a pair were present ('Simplex','Duplex'), using Default.\r\n");
}

TEST_CASE("Log_methods_that_take_words_skip_unknown_ones_silently") {
    LogSession session;
    session.Enable();
    const auto contents = CreateJobContents();
    const UniqueBstr words(L"Napkin,Shiny,Glue,Braille");
    CHECK_HR(contents->GenerateContentsFromPageCounterInfo(words.Get(), 1, 1, 1, 1), S_OK);
    UniqueBstr page;
    CHECK_HR(
        contents->GenerateGeneralContentsFromPageCounterInfo(words.Get(), 1, 1, VARIANT_FALSE, page.Put()),
        S_OK);
    CHECK_TEXT(page.View(), L"Simplex,B&W");
    CHECK_HR(contents->GenerateCopyLineFromPageCounterInfo(words.Get(), 1, 0, 0, 1), S_OK);
    UniqueBstr texts[6];
    VARIANT_BOOL flag = VARIANT_TRUE;
    const auto match = [&](const wchar_t* attributes) {
        return contents->MatchAttributes(UniqueBstr(attributes).Get(), texts[0].Put(), texts[1].Put(),
                                         texts[2].Put(), texts[3].Put(), texts[4].Put(), &flag,
                                         texts[5].Put());
    };
    CHECK_HR(match(L"Napkin,Shiny,Glue,Braille"), S_OK);
    CHECK_TEXT(texts[5].View(), words.View());
    CHECK_HR(contents->DoAttributesMatch(words.Get(), texts[5].Put(), &flag), S_OK);
    CHECK_TEXT(texts[5].View(), words.View());
    CHECK(flag == VARIANT_FALSE);
    // Unknown bits next to known ones are skipped too.
    CHECK_HR(
        contents->GenerateContentsFromDBInfo(UniqueBstr(L"1,1,1,1,1073741825").Get(), 1, 1, 1, (1 << 30) | 1),
        S_OK);
    CHECK_TEXT(session.TakeText(), L"");

    const std::wstring both =
        L"Both attributes of a pair were present ('Simplex','Duplex'), using Default.\r\n";
    CHECK_HR(match(L"Duplex,Simplex"), S_OK);
    CHECK_TEXT(session.TakeText(), both);
    CHECK_HR(contents->DoAttributesMatch(UniqueBstr(L"Duplex,Simplex").Get(), texts[5].Put(), &flag), S_OK);
    CHECK_TEXT(session.TakeText(), both);
}

TEST_CASE("Log_known_words_and_empty_texts_are_not_mentioned") {
    LogSession session;
    session.Enable();
    const auto line = CreateCopyLine();
    const auto contents = CreateJobContents();
    CHECK(Value(line, &ICopyLine::get_DBAttributes) == 0);
    CHECK(Value(contents, &IJobContents::get_DBFinishing) == 0);
    CHECK_HR(contents->GenerateContentsFromPageCounterInfo(UniqueBstr(L"A4,Duplex,Color,PDF,Staple").Get(), 1,
                                                           1, 2, 1),
             S_OK);
    CHECK_TEXT(Text(contents, &IJobContents::get_DBCopyLines), L"1,0,2,1,10");
    CHECK_TEXT(session.TakeText(), L"");
}
