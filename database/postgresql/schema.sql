-- Tables and views for the records that "jobobjects export" writes, for PostgreSQL 15 or newer. The tables of jobs are
-- partitioned by month; load.sql creates the partitions. docs/database.md explains them.

CREATE TABLE IF NOT EXISTS jobs (
    record_id text NOT NULL,
    class text NOT NULL,
    version text,
    job_guid text,
    customer_code text,
    user_name text,
    user_domain_name text,
    desktop_user_name text,
    desktop_user_domain_name text,
    from_system_user integer,
    identifier_type integer,
    identifier_data text,
    job_time_local timestamp NOT NULL DEFAULT '-infinity',
    job_time_utc timestamp,
    job_size integer,
    job_name text,
    job_file_name text,
    job_data_type text,
    machine_name text,
    application_name text,
    application_description text,
    log_target_type integer,
    log_target text,
    vpn_connected integer,
    toner_coverage integer,
    toner_saving integer,
    data_source integer,
    destination_type integer,
    destination text,
    phone_number text,
    remote_station_id text,
    duration integer,
    job_originals integer,
    job_copies integer,
    job_pdl text,
    job_finishing text,
    pdl_code integer,
    finishing_mask integer,
    job_contents_source integer,
    job_contents_discard_count integer,
    page_counter_copy_lines text,
    page_counter_error_message text,
    page_counter_result text,
    windows_pages integer,
    windows_originals integer,
    dev_mode_fields integer,
    dev_mode_paper_size integer,
    dev_mode_copies integer,
    dev_mode_color integer,
    dev_mode_duplex integer,
    policy_id integer,
    policy_name text,
    policy_has_rules integer,
    policy_cancelled integer,
    policy_inform_only integer,
    PRIMARY KEY (record_id, job_time_local)
) PARTITION BY RANGE (job_time_local);
-- A job that is exported again with other contents is the same job; the first one stays.
CREATE UNIQUE INDEX IF NOT EXISTS jobs_by_guid ON jobs (class, job_guid, job_time_local) WHERE job_guid <> '';

CREATE TABLE IF NOT EXISTS copy_lines (
    record_id text NOT NULL,
    line integer NOT NULL,
    paper_size text,
    paper_dimensions text,
    attributes text,
    sheets integer,
    pages_bw integer,
    pages_color integer,
    pages_blank integer,
    is_duplex integer,
    paper_code integer,
    attribute_mask integer,
    job_time_local timestamp NOT NULL,
    PRIMARY KEY (record_id, line, job_time_local),
    FOREIGN KEY (record_id, job_time_local) REFERENCES jobs (record_id, job_time_local)
) PARTITION BY RANGE (job_time_local);

CREATE TABLE IF NOT EXISTS policy_violations (
    record_id text NOT NULL,
    trigger_id integer NOT NULL,
    action text,
    job_time_local timestamp NOT NULL,
    PRIMARY KEY (record_id, trigger_id, job_time_local),
    FOREIGN KEY (record_id, job_time_local) REFERENCES jobs (record_id, job_time_local)
) PARTITION BY RANGE (job_time_local);

CREATE TABLE IF NOT EXISTS logical_printers (
    record_id text NOT NULL,
    version text,
    logical_printer_guid text,
    customer_code text,
    machine_guid text,
    first_transaction_date timestamp,
    last_transaction_date timestamp,
    printer_name text,
    port_name text,
    is_secure_print integer,
    share_name text,
    server_name text,
    location text,
    comments text,
    attributes integer,
    color_capable integer,
    build_number integer,
    tracker_version text,
    driver_name text,
    driver_file_name text,
    driver_data_file_name text,
    driver_file_description text,
    driver_company_name text,
    driver_file_version text,
    print_monitor_name text,
    print_monitor_file_name text,
    print_monitor_file_description text,
    print_monitor_company_name text,
    print_monitor_file_version text,
    print_processor_name text,
    printer_info text,
    destination text,
    PRIMARY KEY (record_id)
);

-- Jobs without a time.
CREATE TABLE IF NOT EXISTS jobs_without_time PARTITION OF jobs DEFAULT;
CREATE TABLE IF NOT EXISTS copy_lines_without_time PARTITION OF copy_lines DEFAULT;
CREATE TABLE IF NOT EXISTS policy_violations_without_time PARTITION OF policy_violations DEFAULT;

-- Codes and words of the catalogue, from "jobobjects catalogue --sql". Dimensions are tenths of a millimetre.
CREATE TABLE IF NOT EXISTS paper_sizes (code integer PRIMARY KEY, name text NOT NULL, width integer, height integer);
CREATE TABLE IF NOT EXISTS page_attributes (code integer PRIMARY KEY, name text NOT NULL, pair integer);
CREATE TABLE IF NOT EXISTS finishing_options (code integer PRIMARY KEY, name text NOT NULL);
CREATE TABLE IF NOT EXISTS languages (code integer PRIMARY KEY, name text NOT NULL);

-- Prices of a page and of a sheet, by paper. Code 0 is the price of papers that are not listed.
CREATE TABLE IF NOT EXISTS prices (paper_code integer PRIMARY KEY, page_bw numeric(10, 4) NOT NULL, page_color numeric(10, 4) NOT NULL, sheet numeric(10, 4) NOT NULL);
INSERT INTO prices VALUES (0, 0.01, 0.06, 0.008), (4, 0.02, 0.12, 0.016) ON CONFLICT DO NOTHING;

-- The newest record of each logical printer.
CREATE OR REPLACE VIEW printers AS
SELECT * FROM (
    SELECT logical_printers.*,
           ROW_NUMBER() OVER (PARTITION BY logical_printer_guid ORDER BY last_transaction_date DESC, record_id) AS age
    FROM logical_printers) AS ranked
WHERE age = 1;

-- Copy lines with their paper and attributes in words.
CREATE OR REPLACE VIEW copy_lines_in_words AS
SELECT copy_lines.record_id, copy_lines.line, COALESCE(paper_sizes.name, copy_lines.paper_size) AS paper,
       (SELECT string_agg(name, ',' ORDER BY code) FROM page_attributes WHERE attribute_mask & code <> 0) AS page_attributes,
       CAST(pages_bw AS bigint) + pages_color + pages_blank AS pages,
       pages_bw, pages_color, pages_blank, sheets, is_duplex, paper_code
FROM copy_lines LEFT JOIN paper_sizes ON paper_sizes.code = copy_lines.paper_code;

-- Jobs with their user, printer, finishing and outcome in words, and the sums of their copy lines.
CREATE OR REPLACE VIEW jobs_in_words AS
SELECT jobs.record_id, jobs.class, jobs.job_time_local, CASE WHEN isfinite(jobs.job_time_local) THEN to_char(jobs.job_time_local, 'YYYY-MM') ELSE '' END AS month, jobs.job_name,
       CASE WHEN jobs.class <> 'PrintJob' THEN jobs.identifier_data
            WHEN jobs.user_domain_name = '' THEN jobs.user_name
            ELSE jobs.user_domain_name || '\' || jobs.user_name END AS user_name,
       CASE jobs.log_target_type
            WHEN 1 THEN COALESCE(printers.printer_name, jobs.log_target)
            WHEN 2 THEN 'Device ' || jobs.log_target
            WHEN 3 THEN jobs.log_target
            ELSE '' END AS printer,
       languages.name AS language,
       (SELECT string_agg(name, ',' ORDER BY code) FROM finishing_options WHERE jobs.finishing_mask & code <> 0) AS finishing,
       CASE WHEN jobs.policy_id IS NULL THEN 'no policy'
            WHEN jobs.policy_cancelled = 1 THEN 'cancelled'
            WHEN jobs.policy_inform_only = 1 THEN 'informed'
            WHEN EXISTS (SELECT * FROM policy_violations WHERE policy_violations.record_id = jobs.record_id AND policy_violations.job_time_local = jobs.job_time_local) THEN 'violated'
            ELSE 'kept' END AS outcome,
       COALESCE(lines.pages, 0) AS pages, COALESCE(lines.pages_color, 0) AS pages_color,
       COALESCE(lines.pages_duplex, 0) AS pages_duplex, COALESCE(lines.sheets, 0) AS sheets,
       COALESCE(lines.cost, 0) AS cost
FROM jobs
LEFT JOIN (
    SELECT record_id, SUM(CAST(pages_bw AS bigint) + pages_color + pages_blank) AS pages, SUM(CAST(pages_color AS bigint)) AS pages_color,
           SUM(CASE WHEN is_duplex = 1 THEN CAST(pages_bw AS bigint) + pages_color + pages_blank ELSE 0 END) AS pages_duplex,
           SUM(CAST(sheets AS bigint)) AS sheets,
           SUM(pages_bw * COALESCE(own.page_bw, other.page_bw) + pages_color * COALESCE(own.page_color, other.page_color)
               + sheets * COALESCE(own.sheet, other.sheet)) AS cost
    FROM copy_lines
    LEFT JOIN prices AS own ON own.paper_code = copy_lines.paper_code
    LEFT JOIN prices AS other ON other.paper_code = 0
    GROUP BY record_id) AS lines ON lines.record_id = jobs.record_id
LEFT JOIN printers ON printers.logical_printer_guid = jobs.log_target
LEFT JOIN languages ON languages.code = jobs.pdl_code
WHERE jobs.class IN ('PrintJob', 'CopyJob', 'ScanJob', 'FaxJob');

-- The arguments of GenerateContentsFromDBInfo.
CREATE OR REPLACE VIEW contents_codes AS
SELECT record_id, job_guid, COALESCE((SELECT string_agg(paper_code || ',' || (pages_bw + pages_blank) || ',' || pages_color || ',' || sheets || ',' || attribute_mask, ';' ORDER BY line) FROM copy_lines WHERE copy_lines.record_id = jobs.record_id AND copy_lines.job_time_local = jobs.job_time_local), '') AS copy_lines,
       job_originals, job_copies, pdl_code, finishing_mask
FROM jobs
WHERE job_originals IS NOT NULL;
