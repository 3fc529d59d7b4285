#pragma once

#include "TableRows.h"

#include <array>
#include <span>
#include <string_view>

// The tables that records become, with their columns in order. database/ has the same ones.

inline constexpr std::array JobColumns{"record_id",
                                       "class",
                                       "version",
                                       "job_guid",
                                       "customer_code",
                                       "user_name",
                                       "user_domain_name",
                                       "desktop_user_name",
                                       "desktop_user_domain_name",
                                       "from_system_user",
                                       "identifier_type",
                                       "identifier_data",
                                       "job_time_local",
                                       "job_time_utc",
                                       "job_size",
                                       "job_name",
                                       "job_file_name",
                                       "job_data_type",
                                       "machine_name",
                                       "application_name",
                                       "application_description",
                                       "log_target_type",
                                       "log_target",
                                       "vpn_connected",
                                       "toner_coverage",
                                       "toner_saving",
                                       "data_source",
                                       "destination_type",
                                       "destination",
                                       "phone_number",
                                       "remote_station_id",
                                       "duration",
                                       "job_originals",
                                       "job_copies",
                                       "job_pdl",
                                       "job_finishing",
                                       "pdl_code",
                                       "finishing_mask",
                                       "job_contents_source",
                                       "job_contents_discard_count",
                                       "page_counter_copy_lines",
                                       "page_counter_error_message",
                                       "page_counter_result",
                                       "windows_pages",
                                       "windows_originals",
                                       "dev_mode_fields",
                                       "dev_mode_paper_size",
                                       "dev_mode_copies",
                                       "dev_mode_color",
                                       "dev_mode_duplex",
                                       "policy_id",
                                       "policy_name",
                                       "policy_has_rules",
                                       "policy_cancelled",
                                       "policy_inform_only"};

inline constexpr std::array CopyLineColumns{"record_id",   "line",      "paper_size", "paper_dimensions",
                                            "attributes",  "sheets",    "pages_bw",   "pages_color",
                                            "pages_blank", "is_duplex", "paper_code", "attribute_mask"};

inline constexpr std::array ViolationColumns{"record_id", "trigger_id", "action"};

inline constexpr std::array PrinterColumns{"record_id",
                                           "version",
                                           "logical_printer_guid",
                                           "customer_code",
                                           "machine_guid",
                                           "first_transaction_date",
                                           "last_transaction_date",
                                           "printer_name",
                                           "port_name",
                                           "is_secure_print",
                                           "share_name",
                                           "server_name",
                                           "location",
                                           "comments",
                                           "attributes",
                                           "color_capable",
                                           "build_number",
                                           "tracker_version",
                                           "driver_name",
                                           "driver_file_name",
                                           "driver_data_file_name",
                                           "driver_file_description",
                                           "driver_company_name",
                                           "driver_file_version",
                                           "print_monitor_name",
                                           "print_monitor_file_name",
                                           "print_monitor_file_description",
                                           "print_monitor_company_name",
                                           "print_monitor_file_version",
                                           "print_processor_name",
                                           "printer_info",
                                           "destination"};

/// The index of a column. A name that does not exist fails the compilation.
template<std::size_t Count>
consteval std::size_t ColumnOf(const std::array<const char*, Count>& columns, std::string_view name) {
    std::size_t column = 0;
    while (columns.at(column) != name)
        ++column;
    return column;
}
consteval std::size_t JobColumn(std::string_view name) {
    return ColumnOf(JobColumns, name);
}
consteval std::size_t CopyLineColumn(std::string_view name) {
    return ColumnOf(CopyLineColumns, name);
}
consteval std::size_t ViolationColumn(std::string_view name) {
    return ColumnOf(ViolationColumns, name);
}
consteval std::size_t PrinterColumn(std::string_view name) {
    return ColumnOf(PrinterColumns, name);
}

/// The values of log_target_type.
enum LogTargetType : std::int64_t {
    NoTarget = 0,
    LogicalPrinterTarget = 1,
    DeviceTarget = 2,
    DeviceAddressTarget = 3
};

enum class RecordTable : std::size_t { Jobs, CopyLines, Violations, Printers };

struct TableForm {
    const char* name;
    std::span<const char* const> columns;
};
inline constexpr std::array<TableForm, 4> RecordTables{{
    {"jobs", JobColumns},
    {"copy_lines", CopyLineColumns},
    {"policy_violations", ViolationColumns},
    {"logical_printers", PrinterColumns},
}};

/// The rows of one record, by table.
class RecordRows {
public:
    TableRows& operator[](RecordTable table) { return m_tables[static_cast<std::size_t>(table)]; }
    const TableRows& operator[](RecordTable table) const { return m_tables[static_cast<std::size_t>(table)]; }
    void Clear() noexcept {
        for (TableRows& rows : m_tables)
            rows.Clear();
    }

private:
    std::array<TableRows, RecordTables.size()> m_tables{
        TableRows(JobColumns.size()), TableRows(CopyLineColumns.size()), TableRows(ViolationColumns.size()),
        TableRows(PrinterColumns.size())};
};
