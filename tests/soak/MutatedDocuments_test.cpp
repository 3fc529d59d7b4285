#include "DocumentMutator.h"
#include "RecordClasses.h"
#include "Watchdog.h"

#include "tests/support/ProcessCounters.h"

#include <cstdio>

// Puts damaged documents into every class. SOAK_DOCUMENTS and SOAK_SEED change the run; SOAK_FIRST starts
// with another document, to reproduce a failure.

namespace {

struct Tally {
    int accepted = 0;
    int refused = 0;
};

/// Two objects of one class: the first reads the documents, the second reads what the first writes.
class Subject {
public:
    explicit Subject(const RecordClass& of) : m_class(of) {}

    const RecordClass& Class() const { return m_class; }
    void Renew() {
        m_record = CreateRecord(m_class);
        m_reader = CreateRecord(m_class);
    }
    HRESULT Take(const std::wstring& document) {
        return m_class.putXml(m_record.Get(), UniqueBstr(document).Get());
    }
    /// Checks that the record's own XML round-trips. Returns the problem, or an empty text.
    std::string FaultOfOwnText() {
        UniqueBstr own, again;
        if (m_class.getXml(m_record.Get(), own.Put()) != S_OK)
            return "get Xml fails";
        const HRESULT result = m_class.putXml(m_reader.Get(), own.Get());
        // A version without a defined first number is written as a text that cannot be read.
        if (result == E_FAIL && own.View().find(L" Version=\"&lt;invalid&gt;\"") != std::wstring_view::npos)
            return {};
        if (result != S_OK)
            return "put Xml refuses the record's own XML " + Narrow(own.View());
        if (m_class.getXml(m_reader.Get(), again.Put()) != S_OK)
            return "get Xml fails after the record's own XML";
        if (own.View() != again.View())
            return "the record's own XML changes from " + Narrow(own.View()) + "\nto " + Narrow(again.View());
        return {};
    }

private:
    const RecordClass& m_class;
    ComPtr<IDispatch> m_record;
    ComPtr<IDispatch> m_reader;
};

void TakeDocument(Subject& subject, const std::wstring& document, Tally& tally) {
    const HRESULT result = subject.Take(document);
    if (result != S_OK && result != E_FAIL)
        FAIL_CHECK("put Xml returns " << Hex(result));
    ++(result == S_OK ? tally.accepted : tally.refused);
    const std::string fault = subject.FaultOfOwnText();
    if (!fault.empty())
        FAIL_CHECK(fault);
}

/// Puts the documents `first` to `end` - 1 into every class.
Tally TakeDocuments(const DocumentMutator& mutator, int first, int end, Watchdog& watchdog) {
    Tally tally;
    std::vector<Subject> subjects;
    for (const RecordClass& each : RecordClasses())
        subjects.emplace_back(each);
    for (int number = first; number < end; ++number) {
        const std::wstring original = mutator.Document(number);
        for (Subject& subject : subjects) {
            const wchar_t* const name = subject.Class().name;
            const std::wstring document = number % 2 ? WithRoot(original, name) : original;
            watchdog.Step(number, name);
            // Objects are reused, so that state left by one document can affect the next.
            if ((number - first) % 32 == 0)
                subject.Renew();
            INFO("document " << number << " in " << Narrow(name) << ": " << Narrow(document));
            TakeDocument(subject, document, tally);
        }
    }
    SetErrorInfo(0, nullptr);
    return tally;
}

} // namespace

TEST_CASE("Xml_of_every_class_survives_damaged_documents") {
    const int first = SoakCount("SOAK_FIRST", 0);
    const int count = SoakCount("SOAK_DOCUMENTS", 500);
    const auto seed = static_cast<std::uint32_t>(SoakCount("SOAK_SEED", 20260));
    const DocumentMutator mutator(seed);
    Watchdog watchdog("damaged documents", seed);
    // COM and the system allocate on first use.
    TakeDocuments(mutator, first, first + 50, watchdog);
    REQUIRE_HR(AskLibraryToUnload(), S_OK);
    const ProcessCounters before = ProcessCounters::Now();
    const Tally tally = TakeDocuments(mutator, first, first + count, watchdog);
    CHECK_HR(AskLibraryToUnload(), S_OK);
    const ProcessCounters after = ProcessCounters::Now();
    std::printf("%d documents of seed %lu in each of %zu classes: %d taken, %d refused; %s\n", count,
                static_cast<unsigned long>(seed), RecordClasses().size(), tally.accepted, tally.refused,
                Growth(before, after).c_str());
    CHECK(tally.accepted > 0);
    CHECK(tally.refused > 0);
    CHECK_NO_GROWTH(before, after, count);
}
