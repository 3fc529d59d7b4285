#include "ReportNumbers.h"

#include <algorithm>

namespace {

constexpr std::size_t MostProblems = 200;

std::string UserOf(const TableRow& job) {
    if (job[JobColumn("class")].Text() != "PrintJob")
        return job[JobColumn("identifier_data")].Text();
    const std::string& domain = job[JobColumn("user_domain_name")].Text();
    const std::string& user = job[JobColumn("user_name")].Text();
    return domain.empty() ? user : domain + "\\" + user;
}

Outcome OutcomeOf(const TableRow& job, const RecordRows& rows) {
    if (job[JobColumn("policy_id")].GetKind() == TableCell::Kind::None)
        return Outcome::NoPolicy;
    if (job[JobColumn("policy_cancelled")].Number() != 0)
        return Outcome::Cancelled;
    if (job[JobColumn("policy_inform_only")].Number() != 0)
        return Outcome::Informed;
    const TableRows& violations = rows[RecordTable::Violations];
    return violations.begin() == violations.end() ? Outcome::Kept : Outcome::Violated;
}

PageCounts CountsOf(const TableRow& line) {
    PageCounts counts;
    counts.jobs = 1;
    counts.color = line[CopyLineColumn("pages_color")].Number();
    counts.pages = line[CopyLineColumn("pages_bw")].Number() + counts.color +
                   line[CopyLineColumn("pages_blank")].Number();
    counts.duplex = line[CopyLineColumn("is_duplex")].Number() != 0 ? counts.pages : 0;
    counts.sheets = line[CopyLineColumn("sheets")].Number();
    return counts;
}

} // namespace

PageCounts& PageCounts::operator+=(const PageCounts& other) noexcept {
    jobs += other.jobs;
    pages += other.pages;
    color += other.color;
    duplex += other.duplex;
    sheets += other.sheets;
    return *this;
}

/// By the keys of database/*/schema.sql.
bool ReportNumbers::IsRepeated(const TableRow& job) {
    const std::string& guid = job[JobColumn("job_guid")].Text();
    if (guid.empty())
        return !m_identities.insert(job[JobColumn("record_id")].Text()).second;
    return !m_identities
                .insert(job[JobColumn("class")].Text() + guid + job[JobColumn("job_time_local")].Text())
                .second;
}

void ReportNumbers::AddPrinter(const TableRow& printer) {
    const std::string& lastUsed = printer[PrinterColumn("last_transaction_date")].Text();
    const auto [known, isNew] = m_printers.try_emplace(printer[PrinterColumn("logical_printer_guid")].Text());
    if (isNew || known->second.lastUsed < lastUsed)
        known->second = {printer[PrinterColumn("printer_name")].Text(), lastUsed};
}

/// The catalogue's name, or without a code the record's.
std::string ReportNumbers::PaperOf(const TableRow& line) {
    const auto known = m_papers.find(line[CopyLineColumn("paper_code")].Number());
    if (known != m_papers.end())
        return known->second;
    const std::string& name = line[CopyLineColumn("paper_size")].Text();
    constexpr std::size_t mostPapers = 20;
    if (!m_papers.empty() && unknownPapers.size() < mostPapers)
        unknownPapers.insert(name);
    return name;
}

void ReportNumbers::AddJob(const TableRow& job, const RecordRows& rows) {
    PageCounts counts;
    std::map<std::string, PageCounts> ofPapers;
    for (const TableRow& line : rows[RecordTable::CopyLines]) {
        const PageCounts ofLine = CountsOf(line);
        counts += ofLine;
        PageCounts& ofPaper = ofPapers[PaperOf(line)];
        ofPaper += ofLine;
        ofPaper.jobs = 1;
    }
    counts.jobs = 1;
    total += counts;
    kinds[job[JobColumn("class")].Text()] += counts;
    users[UserOf(job)] += counts;
    for (const auto& [paper, ofPaper] : ofPapers)
        papers[paper] += ofPaper;
    if (const std::string& time = job[JobColumn("job_time_local")].Text(); !time.empty())
        days[time.substr(0, time.find('T'))] += counts;
    m_targets[{job[JobColumn("log_target_type")].Number(), job[JobColumn("log_target")].Text()}] += counts;
    outcomes.at(static_cast<std::size_t>(OutcomeOf(job, rows))) += counts;
    for (const TableRow& violation : rows[RecordTable::Violations])
        rules[{violation[ViolationColumn("trigger_id")].Number(),
               violation[ViolationColumn("action")].Text()}] += counts;
}

void ReportNumbers::Add(const RecordRows& rows) {
    for (const TableRow& printer : rows[RecordTable::Printers])
        AddPrinter(printer);
    for (const TableRow& job : rows[RecordTable::Jobs]) {
        if (!job[JobColumn("class")].Text().ends_with("Job")) // a part of a job
            continue;
        if (IsRepeated(job))
            ++repeated;
        else
            AddJob(job, rows);
    }
}

void ReportNumbers::Add(const InputProblem& problem) {
    if (++problemCount <= MostProblems)
        problems.push_back(problem);
}

ReportNumbers::ByName ReportNumbers::Printers() const {
    ByName named;
    for (const auto& [target, counts] : m_targets) {
        const auto& [type, text] = target;
        const auto known = m_printers.find(text);
        if (type == LogicalPrinterTarget && known != m_printers.end())
            named[known->second.name] += counts;
        else
            named[type == DeviceTarget ? "Device " + text : text] += counts;
    }
    return named;
}
