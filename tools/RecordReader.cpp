#include "RecordReader.h"

#include "Console.h"
#include "DateText.h"
#include "SystemError.h"
#include "Utf8.h"

#include <cstdint>
#include <span>
#include <tuple>
#include <variant>

namespace {

/// The library refuses a record.
struct Refused {
    std::wstring error;
};

void Check(HRESULT result) {
    if (FAILED(result))
        throw ToolError(L"a property cannot be read: " + ErrorText(result));
}

template<class Interface>
ComPtr<Interface> As(IUnknown* object) {
    ComPtr<Interface> other;
    Check(object->QueryInterface(__uuidof(Interface), other.PutVoid()));
    return other;
}

template<class Interface, class Value>
using Getter = HRESULT (STDMETHODCALLTYPE Interface::*)(Value*);

/// A column and the property in it.
template<class Interface>
struct Field {
    std::size_t column;
    std::variant<Getter<Interface, BSTR>, Getter<Interface, LONG>, Getter<Interface, VARIANT_BOOL>> get;
};

template<class Interface>
UniqueBstr Text(Interface* object, Getter<Interface, BSTR> get) {
    UniqueBstr text;
    Check((object->*get)(text.Put()));
    return text;
}

template<class Interface, class Value>
Value Number(Interface* object, Getter<Interface, Value> get) {
    Value value{};
    Check((object->*get)(&value));
    return value;
}

template<class Interface, class Child>
ComPtr<Child> ChildOf(Interface* object, HRESULT (STDMETHODCALLTYPE Interface::*get)(Child**)) {
    ComPtr<Child> child;
    Check((object->*get)(child.Put()));
    return child;
}

template<class Interface>
void Fill(TableRow& row, Interface* object, std::span<const Field<Interface>> fields) {
    for (const Field<Interface>& field : fields) {
        TableCell& cell = row[field.column];
        if (const auto* text = std::get_if<Getter<Interface, BSTR>>(&field.get))
            AppendUtf8(cell.SetText(), Text(object, *text).View());
        else if (const auto* number = std::get_if<Getter<Interface, LONG>>(&field.get))
            cell.SetNumber(Number(object, *number));
        else
            cell.SetNumber(Number(object, *std::get_if<Getter<Interface, VARIANT_BOOL>>(&field.get)) ? 1 : 0);
    }
}

constexpr Field<IPrintJob> PrintJobFields[] = {
    {JobColumn("version"), &IPrintJob::get_Version},
    {JobColumn("job_guid"), &IPrintJob::get_JobGuid},
    {JobColumn("customer_code"), &IPrintJob::get_CustomerCode},
    {JobColumn("user_name"), &IPrintJob::get_UserName},
    {JobColumn("user_domain_name"), &IPrintJob::get_UserDomainName},
    {JobColumn("desktop_user_name"), &IPrintJob::get_DesktopUserName},
    {JobColumn("desktop_user_domain_name"), &IPrintJob::get_DesktopUserDomainName},
    {JobColumn("from_system_user"), &IPrintJob::get_FromSystemUser},
    {JobColumn("job_size"), &IPrintJob::get_JobSize},
    {JobColumn("job_name"), &IPrintJob::get_JobName},
    {JobColumn("job_file_name"), &IPrintJob::get_JobFileName},
    {JobColumn("job_data_type"), &IPrintJob::get_JobDataType},
    {JobColumn("machine_name"), &IPrintJob::get_MachineName},
    {JobColumn("application_name"), &IPrintJob::get_ApplicationName},
    {JobColumn("application_description"), &IPrintJob::get_ApplicationDescription},
    {JobColumn("log_target_type"), &IPrintJob::get_LogTargetType},
    {JobColumn("vpn_connected"), &IPrintJob::get_VpnConnected},
    {JobColumn("toner_coverage"), &IPrintJob::get_TonerCoverage},
    {JobColumn("toner_saving"), &IPrintJob::get_TonerSaving},
    {JobColumn("data_source"), &IPrintJob::get_DataSource},
    {JobColumn("job_contents_source"), &IPrintJob::get_JobContentsSource},
    {JobColumn("job_contents_discard_count"), &IPrintJob::get_JobContentsDiscardCount},
    {JobColumn("page_counter_error_message"), &IPrintJob::get_PageCounterErrorMessage},
    {JobColumn("page_counter_result"), &IPrintJob::get_PageCounterResult},
};

/// What copy, scan and fax jobs have in common.
template<class Interface>
constexpr Field<Interface> DeviceJobFields[] = {
    {JobColumn("version"), &Interface::get_Version},
    {JobColumn("job_guid"), &Interface::get_JobGuid},
    {JobColumn("customer_code"), &Interface::get_CustomerCode},
    {JobColumn("identifier_type"), &Interface::get_IdentifierType},
    {JobColumn("identifier_data"), &Interface::get_IdentifierData},
};

constexpr Field<IScanJob> ScanJobFields[] = {
    {JobColumn("destination_type"), &IScanJob::get_DestinationType},
    {JobColumn("destination"), &IScanJob::get_Destination},
    {JobColumn("duration"), &IScanJob::get_Duration},
};

constexpr Field<IFaxJob> FaxJobFields[] = {
    {JobColumn("phone_number"), &IFaxJob::get_PhoneNumber},
    {JobColumn("remote_station_id"), &IFaxJob::get_RemoteStationId},
    {JobColumn("duration"), &IFaxJob::get_Duration},
};

constexpr Field<IJobContents> ContentsFields[] = {
    {JobColumn("job_originals"), &IJobContents::get_JobOriginals},
    {JobColumn("job_copies"), &IJobContents::get_JobCopies},
    {JobColumn("job_pdl"), &IJobContents::get_JobPdl},
    {JobColumn("job_finishing"), &IJobContents::get_JobFinishing},
    {JobColumn("pdl_code"), &IJobContents::get_DBPdl},
    {JobColumn("finishing_mask"), &IJobContents::get_DBFinishing},
};

constexpr Field<IJobContents> PageCounterFields[] = {
    {JobColumn("page_counter_copy_lines"), &IJobContents::get_DBCopyLines},
};

constexpr Field<IWindowsPrintInfo> PrintInfoFields[] = {
    {JobColumn("windows_pages"), &IWindowsPrintInfo::get_JobInfoPages},
    {JobColumn("windows_originals"), &IWindowsPrintInfo::get_JobInfoOriginals},
    {JobColumn("dev_mode_fields"), &IWindowsPrintInfo::get_DevModeFields},
    {JobColumn("dev_mode_paper_size"), &IWindowsPrintInfo::get_DevModePaperSize},
    {JobColumn("dev_mode_copies"), &IWindowsPrintInfo::get_DevModeCopies},
    {JobColumn("dev_mode_color"), &IWindowsPrintInfo::get_DevModeColor},
    {JobColumn("dev_mode_duplex"), &IWindowsPrintInfo::get_DevModeDuplex},
};

constexpr Field<IPolicyResults> PolicyFields[] = {
    {JobColumn("policy_id"), &IPolicyResults::get_PolicyId},
    {JobColumn("policy_name"), &IPolicyResults::get_PolicyName},
    {JobColumn("policy_has_rules"), &IPolicyResults::get_HasRules},
    {JobColumn("policy_cancelled"), &IPolicyResults::get_Cancelled},
    {JobColumn("policy_inform_only"), &IPolicyResults::get_InformOnlyViolations},
};

constexpr Field<ICopyLine> CopyLineFields[] = {
    {CopyLineColumn("paper_size"), &ICopyLine::get_PaperSize},
    {CopyLineColumn("paper_dimensions"), &ICopyLine::get_PaperDimensions},
    {CopyLineColumn("attributes"), &ICopyLine::get_Attributes},
    {CopyLineColumn("sheets"), &ICopyLine::get_Sheets},
    {CopyLineColumn("pages_bw"), &ICopyLine::get_PagesBW},
    {CopyLineColumn("pages_color"), &ICopyLine::get_PagesColor},
    {CopyLineColumn("pages_blank"), &ICopyLine::get_PagesBlank},
    {CopyLineColumn("is_duplex"), &ICopyLine::get_IsDuplex},
    {CopyLineColumn("paper_code"), &ICopyLine::get_DBPaperSize},
    {CopyLineColumn("attribute_mask"), &ICopyLine::get_DBAttributes},
};

constexpr Field<ILogicalPrinter> PrinterFields[] = {
    {PrinterColumn("version"), &ILogicalPrinter::get_Version},
    {PrinterColumn("logical_printer_guid"), &ILogicalPrinter::get_LogicalPrinterGuid},
    {PrinterColumn("customer_code"), &ILogicalPrinter::get_CustomerCode},
    {PrinterColumn("machine_guid"), &ILogicalPrinter::get_MachineGuid},
    {PrinterColumn("printer_name"), &ILogicalPrinter::get_PrinterName},
    {PrinterColumn("port_name"), &ILogicalPrinter::get_PortName},
    {PrinterColumn("is_secure_print"), &ILogicalPrinter::get_IsSecurePrint},
    {PrinterColumn("share_name"), &ILogicalPrinter::get_ShareName},
    {PrinterColumn("server_name"), &ILogicalPrinter::get_ServerName},
    {PrinterColumn("location"), &ILogicalPrinter::get_Location},
    {PrinterColumn("comments"), &ILogicalPrinter::get_Comments},
    {PrinterColumn("attributes"), &ILogicalPrinter::get_Attributes},
    {PrinterColumn("color_capable"), &ILogicalPrinter::get_ColorCapable},
    {PrinterColumn("build_number"), &ILogicalPrinter::get_BuildNumber},
    {PrinterColumn("tracker_version"), &ILogicalPrinter::get_TrackerVersion},
    {PrinterColumn("driver_name"), &ILogicalPrinter::get_DriverName},
    {PrinterColumn("driver_file_name"), &ILogicalPrinter::get_DriverFileName},
    {PrinterColumn("driver_data_file_name"), &ILogicalPrinter::get_DriverDataFileName},
    {PrinterColumn("driver_file_description"), &ILogicalPrinter::get_DriverFileDescription},
    {PrinterColumn("driver_company_name"), &ILogicalPrinter::get_DriverCompanyName},
    {PrinterColumn("driver_file_version"), &ILogicalPrinter::get_DriverFileVersion},
    {PrinterColumn("print_monitor_name"), &ILogicalPrinter::get_PrintMonitorName},
    {PrinterColumn("print_monitor_file_name"), &ILogicalPrinter::get_PrintMonitorFileName},
    {PrinterColumn("print_monitor_file_description"), &ILogicalPrinter::get_PrintMonitorFileDescription},
    {PrinterColumn("print_monitor_company_name"), &ILogicalPrinter::get_PrintMonitorCompanyName},
    {PrinterColumn("print_monitor_file_version"), &ILogicalPrinter::get_PrintMonitorFileVersion},
    {PrinterColumn("print_processor_name"), &ILogicalPrinter::get_PrintProcessorName},
    {PrinterColumn("printer_info"), &ILogicalPrinter::get_PrinterInfo},
    {PrinterColumn("destination"), &ILogicalPrinter::get_Destination},
};

/// The getters of the other types fail.
void FillLogTarget(TableRow& row, IPrintJob* job) {
    TableCell& cell = row[JobColumn("log_target")];
    switch (row[JobColumn("log_target_type")].Number()) {
    case LogicalPrinterTarget:
        AppendUtf8(cell.SetText(), Text(job, &IPrintJob::get_LogicalPrinterGuid).View());
        break;
    case DeviceTarget:
        cell.SetText(std::to_string(Number(job, &IPrintJob::get_DeviceId)));
        break;
    case DeviceAddressTarget:
        AppendUtf8(cell.SetText(), Text(job, &IPrintJob::get_DeviceAddress).View());
        break;
    default:
        break;
    }
}

/// The actions are only in the policy's XML.
void FillPolicy(TableRow& row, IPolicyResults* policy, XmlTree& tree, RecordRows& rows) {
    if (!policy)
        return;
    Fill<IPolicyResults>(row, policy, PolicyFields);
    if (!Number(policy, &IPolicyResults::get_PolicyViolated) ||
        !tree.Parse(Text(policy, &IPolicyResults::get_Xml).View()))
        return;
    for (auto rule = tree.Root().Child(L"RuleViolations").FirstChild(); rule; rule = rule.NextSibling()) {
        TableRow& violation = rows[RecordTable::Violations].Add();
        if (const auto id = rule.Find(L"TriggerId"))
            violation[ViolationColumn("trigger_id")].SetNumber(std::stol(id->value));
        if (const auto action = rule.Find(L"Action"))
            AppendUtf8(violation[ViolationColumn("action")].SetText(), action->value);
    }
}

/// A 64-bit FNV-1a hash of a record's class and rows.
std::uint64_t HashOf(std::wstring_view className, const RecordRows& rows) {
    constexpr std::uint64_t prime = 0x100000001B3;
    std::uint64_t hash = 0xCBF29CE484222325;
    const auto add = [&](unsigned byte) { hash = (hash ^ byte) * prime; };
    for (const wchar_t c : className)
        add(c);
    for (std::size_t table = 0; table < RecordTables.size(); ++table)
        for (const TableRow& row : rows[static_cast<RecordTable>(table)])
            for (const TableCell& cell : row) {
                add(0x100U + static_cast<unsigned>(cell.GetKind())); // differs from any byte
                for (const char c : cell.Text())
                    add(static_cast<unsigned char>(c));
            }
    return hash;
}

void SetRecordId(std::uint64_t hash, RecordRows& rows) {
    char id[16];
    for (char& digit : id) {
        digit = "0123456789abcdef"[hash >> 60];
        hash <<= 4;
    }
    for (std::size_t table = 0; table < RecordTables.size(); ++table)
        for (TableRow& row : rows[static_cast<RecordTable>(table)])
            row[0].SetText(std::string_view(id, sizeof id));
}
static_assert(JobColumn("record_id") == 0 && CopyLineColumn("record_id") == 0 &&
              ViolationColumn("record_id") == 0 && PrinterColumn("record_id") == 0);

DATE DateOf(const SYSTEMTIME& time) {
    SYSTEMTIME copy = time;
    DATE date = 0;
    SystemTimeToVariantTime(&copy, &date);
    return date;
}

} // namespace

RecordReader::RecordReader()
    : m_policy(Child<IPolicyResults>(L"PolicyResults")),
      m_printInfo(Child<IWindowsPrintInfo>(L"WindowsPrintInfo")),
      m_pageCounterContents(Child<IJobContents>(L"JobContents")),
      m_line(Child<ICopyLine>(L"CopyLine")) {
    SYSTEMTIME now;
    GetSystemTime(&now);
    m_startUtc = DateOf(now);
    GetLocalTime(&now);
    m_startLocal = DateOf(now);
}

template<class Interface>
ComPtr<Interface> RecordReader::Child(const wchar_t* className) {
    return As<Interface>(RecordObject(className).Get());
}

RecordObject& RecordReader::ObjectOf(const std::wstring& className) {
    return m_objects.try_emplace(className, className).first->second;
}

template<class Interface>
ComPtr<Interface> RecordReader::ReadInto(const wchar_t* className, const UniqueBstr& text) {
    RecordObject& record = ObjectOf(className);
    if (!record.PutXml(text))
        throw Refused{record.Error()};
    return As<Interface>(record.Get());
}

/// A record without a time gets the current one from the library, and another one whenever it is read. Such
/// a cell stays empty.
void RecordReader::Time(DATE date, const UniqueBstr& text, const wchar_t* element, TableCell& cell) const {
    if (date == 0)
        return;
    const DATE start = element == std::wstring_view(L"JobTimeUtc") ? m_startUtc : m_startLocal;
    std::string written = DateText(date);
    if (date >= start - 1.0 / 86400) {
        XmlTree tree;
        tree.Parse(text.View());
        const XmlTree::Element source = tree.Root().Child(element);
        if (!source || !Utf8(source.Text()).starts_with(written.substr(0, 10)))
            return;
    }
    cell.SetText(written);
}

void RecordReader::CopyLineElements(XmlTree::Element parent, RecordRows& rows) {
    std::int64_t index = 0;
    for (auto element = parent.FirstChild(); element; element = element.NextSibling()) {
        Check(m_line->put_Xml(UniqueBstr(element.Markup()).Get()));
        TableRow& row = rows[RecordTable::CopyLines].Add();
        row[CopyLineColumn("line")].SetNumber(index++);
        Fill<ICopyLine>(row, m_line.Get(), CopyLineFields);
    }
}

/// Reads the copy lines from the XML into one object: JobCopyLines and Item create an object for each call.
void RecordReader::Contents(IJobContents* contents, TableRow& job, RecordRows& rows) {
    Fill<IJobContents>(job, contents, ContentsFields);
    if (m_tree.Parse(Text(contents, &IJobContents::get_Xml).View()))
        CopyLineElements(m_tree.Root().FirstChild(), rows);
}

void RecordReader::PrintJob(const UniqueBstr& text, RecordRows& rows) {
    const auto held = As<IPrintJob>(ObjectOf(L"PrintJob").Get());
    // Older versions do not have these elements, and reading them leaves the values of the record before.
    held->put_UserDomainName(nullptr);
    held->put_DesktopUserName(nullptr);
    held->put_DesktopUserDomainName(nullptr);
    held->put_JobTimeUtc(0);
    Check(held->put_PolicyResults(m_policy.Get()));
    Check(held->put_WindowsPrintInfo(m_printInfo.Get()));
    Check(held->put_PageCounterJobContents(m_pageCounterContents.Get()));
    const auto job = ReadInto<IPrintJob>(L"PrintJob", text);

    TableRow& row = rows[RecordTable::Jobs].Add();
    Fill<IPrintJob>(row, job.Get(), PrintJobFields);
    FillLogTarget(row, job.Get());
    TableCell& local = row[JobColumn("job_time_local")];
    Time(Number(job.Get(), &IPrintJob::get_JobTimeLocal), text, L"JobTimeLocal", local);
    if (local.GetKind() != TableCell::Kind::None)
        local.SetText(local.Text() + MillisecondsText(Number(job.Get(), &IPrintJob::get_JobTimeLocalMsec)));
    Time(Number(job.Get(), &IPrintJob::get_JobTimeUtc), text, L"JobTimeUtc", row[JobColumn("job_time_utc")]);
    Contents(ChildOf(job.Get(), &IPrintJob::get_JobContents).Get(), row, rows);
    if (const auto counted = ChildOf(job.Get(), &IPrintJob::get_PageCounterJobContents))
        Fill<IJobContents>(row, counted.Get(), PageCounterFields);
    if (const auto info = ChildOf(job.Get(), &IPrintJob::get_WindowsPrintInfo))
        Fill<IWindowsPrintInfo>(row, info.Get(), PrintInfoFields);
    FillPolicy(row, ChildOf(job.Get(), &IPrintJob::get_PolicyResults).Get(), m_tree, rows);
}

template<class Interface>
ComPtr<Interface> RecordReader::DeviceJob(const wchar_t* className, const UniqueBstr& text,
                                          RecordRows& rows) {
    Check(As<Interface>(ObjectOf(className).Get())->put_PolicyResults(m_policy.Get()));
    auto job = ReadInto<Interface>(className, text);
    TableRow& row = rows[RecordTable::Jobs].Add();
    Fill<Interface>(row, job.Get(), DeviceJobFields<Interface>);
    row[JobColumn("log_target_type")].SetNumber(DeviceTarget);
    row[JobColumn("log_target")].SetText(std::to_string(Number(job.Get(), &Interface::get_DeviceId)));
    Time(Number(job.Get(), &Interface::get_JobTimeLocal), text, L"JobTimeLocal",
         row[JobColumn("job_time_local")]);
    Contents(ChildOf(job.Get(), &Interface::get_JobContents).Get(), row, rows);
    FillPolicy(row, ChildOf(job.Get(), &Interface::get_PolicyResults).Get(), m_tree, rows);
    return job;
}

/// Into a new object, because an older record leaves some of an object's values.
void RecordReader::Printer(const UniqueBstr& text, RecordRows& rows) {
    RecordObject record(L"LogicalPrinter");
    if (!record.PutXml(text))
        throw Refused{record.Error()};
    const auto printer = As<ILogicalPrinter>(record.Get());
    TableRow& row = rows[RecordTable::Printers].Add();
    Fill<ILogicalPrinter>(row, printer.Get(), PrinterFields);
    Time(Number(printer.Get(), &ILogicalPrinter::get_FirstTransactionDate), text, L"FirstTransactionDate",
         row[PrinterColumn("first_transaction_date")]);
    Time(Number(printer.Get(), &ILogicalPrinter::get_LastTransactionDate), text, L"LastTransactionDate",
         row[PrinterColumn("last_transaction_date")]);
}

void RecordReader::ReadClass(const std::wstring& className, const UniqueBstr& text, RecordRows& rows) {
    if (className == L"PrintJob") {
        PrintJob(text, rows);
    } else if (className == L"CopyJob") {
        DeviceJob<ICopyJob>(L"CopyJob", text, rows);
    } else if (className == L"ScanJob") {
        const auto job = DeviceJob<IScanJob>(L"ScanJob", text, rows);
        Fill<IScanJob>(*rows[RecordTable::Jobs].begin(), job.Get(), ScanJobFields);
    } else if (className == L"FaxJob") {
        const auto job = DeviceJob<IFaxJob>(L"FaxJob", text, rows);
        Fill<IFaxJob>(*rows[RecordTable::Jobs].begin(), job.Get(), FaxJobFields);
    } else if (className == L"LogicalPrinter") {
        Printer(text, rows);
    } else {
        ReadPart(className, text, rows);
    }
}

/// A record that is not a job but a part of one.
void RecordReader::ReadPart(const std::wstring& className, const UniqueBstr& text, RecordRows& rows) {
    TableRow& row = rows[RecordTable::Jobs].Add();
    if (className == L"JobContents") {
        Contents(ReadInto<IJobContents>(L"JobContents", text).Get(), row, rows);
    } else if (className == L"WindowsPrintInfo") {
        Fill<IWindowsPrintInfo>(row, ReadInto<IWindowsPrintInfo>(L"WindowsPrintInfo", text).Get(),
                                PrintInfoFields);
    } else if (className == L"PolicyResults") {
        FillPolicy(row, ReadInto<IPolicyResults>(L"PolicyResults", text).Get(), m_tree, rows);
    } else if (className == L"CopyLines") {
        const auto lines = ReadInto<ICopyLines>(L"CopyLines", text);
        if (m_tree.Parse(Text(lines.Get(), &ICopyLines::get_Xml).View()))
            CopyLineElements(m_tree.Root(), rows);
    } else {
        TableRow& line = rows[RecordTable::CopyLines].Add();
        line[CopyLineColumn("line")].SetNumber(0);
        Fill<ICopyLine>(line, ReadInto<ICopyLine>(L"CopyLine", text).Get(), CopyLineFields);
    }
}

std::optional<RecordProblem> RecordReader::Read(const RecordText& record, const wchar_t* encoding,
                                                RecordRows& rows) {
    rows.Clear();
    if (record.root.empty())
        return RecordProblem{ExitNoRecord, record.line, L"text outside of a record"};
    if (record.hasLostCharacters)
        return RecordProblem{ExitNoRecord, record.line, std::wstring(L"not valid ") + encoding};
    const std::wstring className = RecordObject::ClassOfRoot(record.root);
    try {
        if (!className.empty()) {
            ReadClass(className, UniqueBstr(record.text), rows);
            if (TableRows& jobs = rows[RecordTable::Jobs]; jobs.begin() != jobs.end())
                AppendUtf8((*jobs.begin())[JobColumn("class")].SetText(), className);
            SetRecordId(HashOf(className, rows), rows);
            return std::nullopt;
        }
    } catch (const Refused& refused) {
        rows.Clear();
        if (m_tree.Parse(record.text))
            return RecordProblem{ExitRefused, record.line, L"the library refuses it: " + refused.error};
    } catch (const std::bad_alloc&) {
        rows.Clear();
        return RecordProblem{ExitRefused, record.line, L"out of memory"};
    }
    if (m_tree.Parse(record.text))
        return RecordProblem{ExitNoRecord, record.line,
                             L"no record has the root element " + std::wstring(record.root)};
    return RecordProblem{ExitNoRecord, record.line + m_tree.PlaceOf(m_tree.ErrorOffset()).line - 1,
                         m_tree.Error()};
}
