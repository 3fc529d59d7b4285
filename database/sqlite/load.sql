-- Loads an export into SQLite. Run it in the folder of the export; schema.sql comes first:
--
--   sqlite3 jobs.db ".read schema.sql" ".read load.sql"
--
-- Rows that are already there stay as they are.
.bail on
DROP TABLE IF EXISTS temp.new_jobs;
.import --csv --schema temp jobs.csv new_jobs
DROP TABLE IF EXISTS temp.new_copy_lines;
.import --csv --schema temp copy_lines.csv new_copy_lines
DROP TABLE IF EXISTS temp.new_policy_violations;
.import --csv --schema temp policy_violations.csv new_policy_violations
DROP TABLE IF EXISTS temp.new_logical_printers;
.import --csv --schema temp logical_printers.csv new_logical_printers

BEGIN;
INSERT INTO jobs
SELECT record_id, class, version, job_guid, customer_code, user_name, user_domain_name, desktop_user_name,
       desktop_user_domain_name, NULLIF(from_system_user, ''), NULLIF(identifier_type, ''), identifier_data,
       job_time_local, NULLIF(job_time_utc, ''), NULLIF(job_size, ''), job_name, job_file_name, job_data_type,
       machine_name, application_name, application_description, NULLIF(log_target_type, ''), log_target,
       NULLIF(vpn_connected, ''), NULLIF(toner_coverage, ''), NULLIF(toner_saving, ''), NULLIF(data_source, ''),
       NULLIF(destination_type, ''), destination, phone_number, remote_station_id, NULLIF(duration, ''),
       NULLIF(job_originals, ''), NULLIF(job_copies, ''), job_pdl, job_finishing, NULLIF(pdl_code, ''),
       NULLIF(finishing_mask, ''), NULLIF(job_contents_source, ''), NULLIF(job_contents_discard_count, ''),
       page_counter_copy_lines, page_counter_error_message, page_counter_result, NULLIF(windows_pages, ''),
       NULLIF(windows_originals, ''), NULLIF(dev_mode_fields, ''), NULLIF(dev_mode_paper_size, ''),
       NULLIF(dev_mode_copies, ''), NULLIF(dev_mode_color, ''), NULLIF(dev_mode_duplex, ''), NULLIF(policy_id, ''),
       policy_name, NULLIF(policy_has_rules, ''), NULLIF(policy_cancelled, ''), NULLIF(policy_inform_only, '')
FROM temp.new_jobs WHERE true
ON CONFLICT DO NOTHING;
INSERT INTO copy_lines
SELECT record_id, NULLIF(line, ''), paper_size, paper_dimensions, attributes, NULLIF(sheets, ''), NULLIF(pages_bw,
       ''), NULLIF(pages_color, ''), NULLIF(pages_blank, ''), NULLIF(is_duplex, ''), NULLIF(paper_code, ''),
       NULLIF(attribute_mask, '')
FROM temp.new_copy_lines WHERE record_id IN (SELECT record_id FROM jobs)
ON CONFLICT DO NOTHING;
INSERT INTO policy_violations
SELECT record_id, NULLIF(trigger_id, ''), action
FROM temp.new_policy_violations WHERE record_id IN (SELECT record_id FROM jobs)
ON CONFLICT DO NOTHING;
INSERT INTO logical_printers
SELECT record_id, version, logical_printer_guid, customer_code, machine_guid, NULLIF(first_transaction_date, ''),
       NULLIF(last_transaction_date, ''), printer_name, port_name, NULLIF(is_secure_print, ''), share_name,
       server_name, location, comments, NULLIF(attributes, ''), NULLIF(color_capable, ''), NULLIF(build_number, ''),
       tracker_version, driver_name, driver_file_name, driver_data_file_name, driver_file_description,
       driver_company_name, driver_file_version, print_monitor_name, print_monitor_file_name,
       print_monitor_file_description, print_monitor_company_name, print_monitor_file_version, print_processor_name,
       printer_info, destination
FROM temp.new_logical_printers WHERE true
ON CONFLICT DO NOTHING;
COMMIT;

SELECT 'jobs in the export: ' || (SELECT count(*) FROM temp.new_jobs) || ', in the database: ' ||
       (SELECT count(*) FROM jobs) || ', left out because the job is there with other contents: ' ||
       (SELECT count(*) FROM temp.new_jobs WHERE record_id NOT IN (SELECT record_id FROM jobs));
