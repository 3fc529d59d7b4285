// validate: the library reads a record's XML and writes it again; both texts are compared element by element.

#include "CatalogueWords.h"
#include "Commands.h"
#include "Console.h"
#include "Escaping.h"
#include "Findings.h"
#include "Installation.h"
#include "RecordLint.h"
#include "RecordObject.h"
#include "RoundTrip.h"

#include <optional>
#include <utility>

namespace {

class Validation {
public:
    explicit Validation(const Options& options) : m_options(options), m_output(options.format) {}
    ExitCode Run(const std::wstring& path);

private:
    ExitCode Judge(const std::wstring& path, XmlTree& given, Findings& findings);
    static UniqueBstr ReadRecord(const std::wstring& path, std::wstring& className, XmlTree& given,
                                 Findings& findings);
    static bool PassThrough(const std::wstring& className, const UniqueBstr& text, UniqueBstr& written,
                            std::wstring& error);
    ExitCode Compare(UniqueBstr writtenText, const XmlTree& given, Findings& findings);
    const CatalogueWords* Words(Findings& findings);
    void ShowResult(const XmlTree& given, const Findings& findings);

    const Options& m_options;
    FindingsOutput m_output;
    std::optional<CatalogueWords> m_words;
    bool m_haveWords = false;
    std::size_t m_defaults = 0;
};

ExitCode Validation::Run(const std::wstring& path) {
    XmlTree given;
    Findings findings(path, given);
    m_defaults = 0;
    const ExitCode result = Judge(path, given, findings);
    if (m_defaults > 0 && !m_options.listDefaults)
        findings.FileNote(Count(m_defaults, L"missing element") +
                          (m_defaults == 1 ? L" gets its default" : L" get their defaults") +
                          L"; --defaults lists " + (m_defaults == 1 ? L"it" : L"them"));
    findings.Show(m_output);
    if (result == ExitOk)
        ShowResult(given, findings);
    return result;
}

void Validation::ShowResult(const XmlTree& given, const Findings& findings) {
    const auto version = given.Root().Find(L"Version");
    m_output.Result(findings.File(), std::wstring(given.Root().Name()) +
                                         (version ? L" of version " + version->value : L"") +
                                         L", read and written again unchanged");
}

/// Reads the text of a record and sets its class. On failure, the class is empty, with a finding.
UniqueBstr Validation::ReadRecord(const std::wstring& path, std::wstring& className, XmlTree& given,
                                  Findings& findings) {
    const TextFile file = ReadTextFile(path);
    findings.Encoding(file);
    if (!given.Parse(file.text)) {
        findings.ParseError(file);
        return {};
    }
    const std::wstring root(given.Root().Name());
    className = RecordObject::ClassOfRoot(root);
    if (className.empty())
        findings.Error(given.Root().Offset(), L"no record has the root element " + root);
    return UniqueBstr(file.text);
}

/// Holds no text longer than needed: the library holds a large one as well.
ExitCode Validation::Judge(const std::wstring& path, XmlTree& given, Findings& findings) {
    std::wstring className, error;
    UniqueBstr text = ReadRecord(path, className, given, findings);
    if (className.empty())
        return ExitNoRecord;
    given.Clear();
    UniqueBstr writtenText;
    const bool isRead = PassThrough(className, text, writtenText, error);
    given.Parse(text.View());
    text = UniqueBstr();
    if (isRead)
        return Compare(std::move(writtenText), given, findings);
    findings.Error(given.Root().Offset(), L"the library refuses it: " + error);
    return ExitRefused;
}

/// The library reads a text and writes it again. Returns false and sets `error` if it refuses the text.
bool Validation::PassThrough(const std::wstring& className, const UniqueBstr& text, UniqueBstr& written,
                             std::wstring& error) {
    RecordObject record(className);
    Console::Progress(L"The library is reading");
    const bool isRead = record.PutXml(text);
    if (isRead) {
        Console::Progress(L"The library is writing");
        written = record.Xml();
    }
    Console::EndProgress();
    error = record.Error();
    return isRead;
}

ExitCode Validation::Compare(UniqueBstr writtenText, const XmlTree& given, Findings& findings) {
    XmlTree written;
    if (!written.Parse(writtenText.View())) {
        findings.FileError(L"the XML that the library writes does not parse: " + written.Error());
        return ExitFindings;
    }
    writtenText = UniqueBstr();
    RoundTrip trip(given, written, findings, m_options.listDefaults);
    trip.Compare();
    m_defaults = trip.Defaults();
    RecordLint(given, findings).Run(Words(findings));
    return findings.Problems() == 0 ? ExitOk : ExitFindings;
}

/// Null, with a note, if there is no catalogue.
const CatalogueWords* Validation::Words(Findings& findings) {
    const std::wstring path = CatalogueBeside(LoadedLibrary());
    if (!m_words)
        m_haveWords = m_words.emplace().Load(path);
    if (!m_haveWords)
        findings.FileNote(L"words are not checked, because the catalogue " + path + L" cannot be read");
    return m_haveWords ? &*m_words : nullptr;
}

} // namespace

ExitCode Validate(const Options& options) {
    Validation validation(options);
    return ForEachFile(options, [&](const std::wstring& path) { return validation.Run(path); });
}
