#include "Records.h"

#include "RecordForm.h"
#include "Table.h"

#include <algorithm>
#include <iterator>
#include <random>
#include <set>

namespace {

/// Builds the texts independently of the code that is timed.
class PlainSink {
public:
    void Open(std::wstring_view name) {
        EndStartTag();
        m_text.append(L"<").append(name);
        m_inStartTag = true;
    }
    void Attribute(std::wstring_view name, std::wstring_view value) {
        m_text.append(L" ").append(name).append(L"=\"").append(value).append(L"\"");
    }
    void Data(std::wstring_view data) {
        EndStartTag();
        for (const wchar_t character : data) {
            switch (character) {
            case L'<':
                m_text += L"&lt;";
                break;
            case L'>':
                m_text += L"&gt;";
                break;
            case L'&':
                m_text += L"&amp;";
                break;
            default:
                m_text += character;
            }
        }
    }
    void Close(std::wstring_view name) {
        EndStartTag();
        m_text.append(L"</").append(name).append(L">");
    }
    void CloseEmpty() {
        m_text += L"/>";
        m_inStartTag = false;
    }
    void Element(std::wstring_view name, const QxString& data) {
        Open(name);
        if (data.empty())
            return CloseEmpty();
        Data(data);
        Close(name);
    }
    void Element(std::wstring_view name, std::int32_t value) { Element(name, std::to_wstring(value)); }
    void Element(std::wstring_view name, bool value) { Element(name, value ? L"true" : L"false"); }
    void Element(std::wstring_view name, const wchar_t* data) { Element(name, QxString(data)); }
    void Element(std::wstring_view name, const QxDateTime& time, std::int32_t milliseconds) {
        Element(name, time.Format(milliseconds));
    }
    const std::wstring& Text() const { return m_text; }

private:
    void EndStartTag() {
        if (m_inStartTag)
            m_text += L'>';
        m_inStartTag = false;
    }

    std::wstring m_text;
    bool m_inStartTag = false;
};

/// Pseudo-random values, the same in every run and on every system.
class Choice {
public:
    explicit Choice(unsigned seed) : m_engine(seed) {}
    std::int32_t Number(std::int32_t lowest, std::int32_t highest) {
        return lowest + static_cast<std::int32_t>(m_engine() % static_cast<unsigned>(highest - lowest + 1));
    }
    bool Flag() { return Number(0, 1) != 0; }
    template<std::size_t Count>
    std::wstring Of(const wchar_t* const (&words)[Count]) {
        return words[Number(0, Count - 1)];
    }
    std::wstring Digits(int count, const wchar_t* digits = L"0123456789ABCDEF", int base = 16) {
        std::wstring text;
        while (count-- > 0)
            text += digits[Number(0, base - 1)];
        return text;
    }
    std::wstring Guid() {
        return L"{" + Digits(8) + L"-" + Digits(4) + L"-" + Digits(4) + L"-" + Digits(4) + L"-" + Digits(12) +
               L"}";
    }

private:
    std::mt19937 m_engine;
};

constexpr const wchar_t* Users[] = {L"j.meyer", L"anna.kowalska", L"p.smith", L"li.wei", L"o.garcia"};
constexpr const wchar_t* Domains[] = {L"OFFICE", L"PLANT-NORTH", L"SALES", L"LAB"};
constexpr const wchar_t* Documents[] = {L"Quarterly <draft> & notes.docx", L"Invoice 4711.pdf",
                                        L"Microsoft Word - Minutes.doc",   L"Q&A sheet.xlsx",
                                        L"http://wiki/?a=1&b=2",           L"Plan B (final).vsd"};
constexpr const wchar_t* Applications[] = {L"winword.exe", L"excel.exe", L"acrord32.exe", L"browser.exe"};
constexpr const wchar_t* Papers[] = {L"A3", L"A4", L"A5", L"Legal", L"Letter", L"Tabloid"};
constexpr const wchar_t* Dimensions[] = {L"2970,4200", L"2100,2970", L"1480,2100",
                                         L"2159,3556", L"2159,2794", L"2794,4318"};
constexpr const wchar_t* Attributes[] = {L"Simplex", L"Duplex", L"Duplex,Tumble", L"Simplex,2up", L""};
constexpr const wchar_t* Finishings[] = {L"Staple", L"Punch,Staple", L"Fold", L""};
constexpr const wchar_t* Pdls[] = {L"PCL XL", L"PostScript", L"NT EMF 1.008", L"PCL5"};
constexpr const wchar_t* Actions[] = {L"Inform", L"Deny", L"Confirm"};

CopyLineValues MakeLine(Choice& choice, std::size_t paper) {
    return {Papers[paper],        Dimensions[paper],    choice.Of(Attributes), choice.Number(1, 40),
            choice.Number(0, 80), choice.Number(0, 80), choice.Number(0, 4)};
}

/// A record has one copy line per paper size, ordered by name.
ContentsValues MakeContents(Choice& choice, int lines) {
    ContentsValues values;
    values.version = L"4.0";
    std::set<std::size_t> chosen;
    while (chosen.size() < static_cast<std::size_t>(lines))
        chosen.insert(static_cast<std::size_t>(choice.Number(0, std::size(Papers) - 1)));
    for (const std::size_t paper : chosen)
        values.lines.push_back(MakeLine(choice, paper));
    values.originals = choice.Number(1, 200);
    values.copies = choice.Number(1, 20);
    values.pdl = choice.Of(Pdls);
    values.finishing = choice.Of(Finishings);
    return values;
}

PrintInfoValues MakePrintInfo(Choice& choice) {
    PrintInfoValues values;
    for (std::int32_t PrintInfoValues::* number :
         {&PrintInfoValues::pages, &PrintInfoValues::originals, &PrintInfoValues::paperLength,
          &PrintInfoValues::paperWidth, &PrintInfoValues::scale, &PrintInfoValues::printQuality,
          &PrintInfoValues::xResolution, &PrintInfoValues::yResolution})
        values.*number = choice.Number(1, 4000);
    for (std::int32_t PrintInfoValues::* number :
         {&PrintInfoValues::orientation, &PrintInfoValues::paperSize, &PrintInfoValues::copies,
          &PrintInfoValues::defaultSource, &PrintInfoValues::color, &PrintInfoValues::duplex,
          &PrintInfoValues::tumble, &PrintInfoValues::ttOption, &PrintInfoValues::collate,
          &PrintInfoValues::mediaType, &PrintInfoValues::pagesPerSide, &PrintInfoValues::pageOrderFlags})
        values.*number = choice.Number(1, 9);
    values.fields = choice.Number(0, 0xFFFFFF);
    values.formName = choice.Of(Papers);
    return values;
}

PolicyValues MakePolicy(Choice& choice) {
    PolicyValues values;
    values.version = L"4.0";
    values.id = choice.Number(1, 500);
    values.name = L"Color for " + choice.Of(Domains);
    values.cancelled = choice.Flag();
    for (std::int32_t trigger = choice.Number(1, 4); trigger < 6; trigger += 3)
        values.violations.emplace_back(trigger, choice.Of(Actions));
    return values;
}

void MakeOrigin(Choice& choice, JobValues& values) {
    values.userName = choice.Of(Users);
    values.userDomain = choice.Of(Domains);
    values.fromSystemUser = choice.Flag();
    values.desktopUser = choice.Of(Users);
    values.desktopDomain = choice.Of(Domains);
    values.logTargetType = L"LogicalPrinter";
    values.logTarget = choice.Guid();
    values.machineName = L"PC-" + choice.Digits(4);
    values.applicationName = choice.Of(Applications);
    values.applicationDescription = choice.Flag() ? L"Mail & more" : L"";
    values.vpnConnected = choice.Flag();
}

double MakeTime(Choice& choice) {
    return QxDateTime::FromCalendar({choice.Number(2001, 2030), choice.Number(1, 12), choice.Number(1, 28),
                                     choice.Number(0, 23), choice.Number(0, 59), choice.Number(0, 59)})
        .Value();
}

JobValues MakeJob(unsigned index) {
    Choice choice(index + 1);
    JobValues values;
    values.version = L"7.26";
    values.guid = choice.Guid();
    values.customerCode = L"C-" + std::to_wstring(1000 + index);
    MakeOrigin(choice, values);
    values.timeLocal = MakeTime(choice);
    values.timeLocalMsec = choice.Number(1, 999);
    values.timeUtc = MakeTime(choice);
    values.size = choice.Number(1, 90'000'000);
    values.name = choice.Of(Documents);
    values.fileName = L"C:\\Windows\\System32\\spool\\PRINTERS\\" + choice.Digits(5) + L".SPL";
    values.dataType = L"NT EMF 1.008";
    values.tonerCoverage = choice.Number(0, 100);
    values.tonerSaving = choice.Number(-1, 100);
    values.dataSource = choice.Number(0, 9);
    values.contentsSource = choice.Number(1, 3);
    values.discardCount = choice.Number(1, 3);
    values.contents = MakeContents(choice, 1 + static_cast<int>(index % 4));
    values.pageCounterContents = MakeContents(choice, 1);
    values.pageCounterError = choice.Flag() ? L"File <locked>." : L"";
    values.pageCounterResult = choice.Digits(1, L"0123456789", 10);
    values.printInfo = MakePrintInfo(choice);
    values.policy = MakePolicy(choice);
    return values;
}

std::vector<JobText> MakeJobTexts() {
    std::vector<JobText> texts;
    std::set<std::wstring> different;
    for (unsigned index = 0; index < 64; ++index) {
        JobValues values = MakeJob(index);
        PlainSink sink;
        RecordForm::WriteJob(sink, values);
        Require(sink.Text().size() >= 3000 && sink.Text().size() <= 4096,
                "a record of " + std::to_string(sink.Text().size()) + " characters");
        different.insert(sink.Text());
        texts.push_back({sink.Text(), std::move(values)});
    }
    Require(different.size() == texts.size(), "two records are the same");
    return texts;
}

} // namespace

const std::vector<JobText>& JobTexts() {
    static const std::vector<JobText> texts = MakeJobTexts();
    return texts;
}

CopyLinesText MakeCopyLines(std::size_t bytes) {
    Choice choice(1);
    CopyLinesText result;
    const std::size_t length = bytes / sizeof(wchar_t);
    result.text.reserve(length + 512);
    result.text = L"<JobCopyLines>";
    result.elements = 1;
    while (result.text.size() < length) {
        const CopyLineValues line =
            MakeLine(choice, static_cast<std::size_t>(choice.Number(0, std::size(Papers) - 1)));
        PlainSink sink;
        RecordForm::WriteLine(sink, line);
        result.text += sink.Text();
        result.elements += 8;
    }
    result.text += L"</JobCopyLines>";
    return result;
}

CopyLinesText MakeAttributes(std::size_t bytes) {
    Choice choice(1);
    PlainSink sink;
    CopyLinesText result;
    sink.Open(L"JobCopyLines");
    for (result.elements = 1; sink.Text().size() * sizeof(wchar_t) < bytes; ++result.elements) {
        const CopyLineValues line =
            MakeLine(choice, static_cast<std::size_t>(choice.Number(0, std::size(Papers) - 1)));
        sink.Open(L"CopyLine");
        sink.Attribute(LineAttributes[0], line.paperSize);
        sink.Attribute(LineAttributes[1], line.attributes);
        sink.Attribute(LineAttributes[2], std::to_wstring(line.sheets));
        sink.Attribute(LineAttributes[3], std::to_wstring(line.pagesColor));
        sink.CloseEmpty();
    }
    sink.Close(L"JobCopyLines");
    result.text = sink.Text();
    return result;
}
