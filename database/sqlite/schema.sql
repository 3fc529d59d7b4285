-- Tables and views for the records that "jobobjects export" writes, for SQLite 3.32 or newer.
-- docs/database.md explains them.

CREATE TABLE IF NOT EXISTS jobs (
    record_id TEXT NOT NULL,
    class TEXT NOT NULL,
    version TEXT,
    job_guid TEXT,
    customer_code TEXT,
    user_name TEXT,
    user_domain_name TEXT,
    desktop_user_name TEXT,
    desktop_user_domain_name TEXT,
    from_system_user INTEGER,
    identifier_type INTEGER,
    identifier_data TEXT,
    job_time_local TEXT NOT NULL DEFAULT '',
    job_time_utc TEXT,
    job_size INTEGER,
    job_name TEXT,
    job_file_name TEXT,
    job_data_type TEXT,
    machine_name TEXT,
    application_name TEXT,
    application_description TEXT,
    log_target_type INTEGER,
    log_target TEXT,
    vpn_connected INTEGER,
    toner_coverage INTEGER,
    toner_saving INTEGER,
    data_source INTEGER,
    destination_type INTEGER,
    destination TEXT,
    phone_number TEXT,
    remote_station_id TEXT,
    duration INTEGER,
    job_originals INTEGER,
    job_copies INTEGER,
    job_pdl TEXT,
    job_finishing TEXT,
    pdl_code INTEGER,
    finishing_mask INTEGER,
    job_contents_source INTEGER,
    job_contents_discard_count INTEGER,
    page_counter_copy_lines TEXT,
    page_counter_error_message TEXT,
    page_counter_result TEXT,
    windows_pages INTEGER,
    windows_originals INTEGER,
    dev_mode_fields INTEGER,
    dev_mode_paper_size INTEGER,
    dev_mode_copies INTEGER,
    dev_mode_color INTEGER,
    dev_mode_duplex INTEGER,
    policy_id INTEGER,
    policy_name TEXT,
    policy_has_rules INTEGER,
    policy_cancelled INTEGER,
    policy_inform_only INTEGER,
    PRIMARY KEY (record_id)
) WITHOUT ROWID;
-- A job that is exported again with other contents is the same job; the first one stays.
CREATE UNIQUE INDEX IF NOT EXISTS jobs_by_guid ON jobs (class, job_guid, job_time_local) WHERE job_guid <> '';
CREATE INDEX IF NOT EXISTS jobs_by_time ON jobs (job_time_local);

CREATE TABLE IF NOT EXISTS copy_lines (
    record_id TEXT NOT NULL,
    line INTEGER NOT NULL,
    paper_size TEXT,
    paper_dimensions TEXT,
    attributes TEXT,
    sheets INTEGER,
    pages_bw INTEGER,
    pages_color INTEGER,
    pages_blank INTEGER,
    is_duplex INTEGER,
    paper_code INTEGER,
    attribute_mask INTEGER,
    PRIMARY KEY (record_id, line),
    FOREIGN KEY (record_id) REFERENCES jobs (record_id)
) WITHOUT ROWID;

CREATE TABLE IF NOT EXISTS policy_violations (
    record_id TEXT NOT NULL,
    trigger_id INTEGER NOT NULL,
    action TEXT,
    PRIMARY KEY (record_id, trigger_id),
    FOREIGN KEY (record_id) REFERENCES jobs (record_id)
) WITHOUT ROWID;

CREATE TABLE IF NOT EXISTS logical_printers (
    record_id TEXT NOT NULL,
    version TEXT,
    logical_printer_guid TEXT,
    customer_code TEXT,
    machine_guid TEXT,
    first_transaction_date TEXT,
    last_transaction_date TEXT,
    printer_name TEXT,
    port_name TEXT,
    is_secure_print INTEGER,
    share_name TEXT,
    server_name TEXT,
    location TEXT,
    comments TEXT,
    attributes INTEGER,
    color_capable INTEGER,
    build_number INTEGER,
    tracker_version TEXT,
    driver_name TEXT,
    driver_file_name TEXT,
    driver_data_file_name TEXT,
    driver_file_description TEXT,
    driver_company_name TEXT,
    driver_file_version TEXT,
    print_monitor_name TEXT,
    print_monitor_file_name TEXT,
    print_monitor_file_description TEXT,
    print_monitor_company_name TEXT,
    print_monitor_file_version TEXT,
    print_processor_name TEXT,
    printer_info TEXT,
    destination TEXT,
    PRIMARY KEY (record_id)
) WITHOUT ROWID;

-- Codes and words of the catalogue, from "jobobjects catalogue --sql". Dimensions are tenths of a millimetre.
CREATE TABLE IF NOT EXISTS paper_sizes (code INTEGER PRIMARY KEY, name TEXT NOT NULL, width INTEGER, height INTEGER);
CREATE TABLE IF NOT EXISTS page_attributes (code INTEGER PRIMARY KEY, name TEXT NOT NULL, pair INTEGER);
CREATE TABLE IF NOT EXISTS finishing_options (code INTEGER PRIMARY KEY, name TEXT NOT NULL);
CREATE TABLE IF NOT EXISTS languages (code INTEGER PRIMARY KEY, name TEXT NOT NULL);

-- Prices of a page and of a sheet, by paper. Code 0 is the price of papers that are not listed.
CREATE TABLE IF NOT EXISTS prices (paper_code INTEGER PRIMARY KEY, page_bw NUMERIC NOT NULL, page_color NUMERIC NOT NULL, sheet NUMERIC NOT NULL);
INSERT OR IGNORE INTO prices VALUES (0, 0.01, 0.06, 0.008), (4, 0.02, 0.12, 0.016);

-- The newest record of each logical printer.
CREATE VIEW IF NOT EXISTS printers AS
SELECT * FROM (
    SELECT logical_printers.*,
           ROW_NUMBER() OVER (PARTITION BY logical_printer_guid ORDER BY last_transaction_date DESC, record_id) AS age
    FROM logical_printers) AS ranked
WHERE age = 1;

-- Copy lines with their paper and attributes in words.
CREATE VIEW IF NOT EXISTS copy_lines_in_words AS
SELECT copy_lines.record_id, copy_lines.line, COALESCE(paper_sizes.name, copy_lines.paper_size) AS paper,
       (SELECT group_concat(name) FROM (SELECT name FROM page_attributes WHERE attribute_mask & code <> 0 ORDER BY code)) AS page_attributes,
       pages_bw + pages_color + pages_blank AS pages,
       pages_bw, pages_color, pages_blank, sheets, is_duplex, paper_code
FROM copy_lines LEFT JOIN paper_sizes ON paper_sizes.code = copy_lines.paper_code;

-- Jobs with their user, printer, finishing and outcome in words, and the sums of their copy lines.
CREATE VIEW IF NOT EXISTS jobs_in_words AS
SELECT jobs.record_id, jobs.class, jobs.job_time_local, substr(jobs.job_time_local, 1, 7) AS month, jobs.job_name,
       CASE WHEN jobs.class <> 'PrintJob' THEN jobs.identifier_data
            WHEN jobs.user_domain_name = '' THEN jobs.user_name
            ELSE jobs.user_domain_name || '\' || jobs.user_name END AS user_name,
       CASE jobs.log_target_type
            WHEN 1 THEN COALESCE(printers.printer_name, jobs.log_target)
            WHEN 2 THEN 'Device ' || jobs.log_target
            WHEN 3 THEN jobs.log_target
            ELSE '' END AS printer,
       languages.name AS language,
       (SELECT group_concat(name) FROM (SELECT name FROM finishing_options WHERE jobs.finishing_mask & code <> 0 ORDER BY code)) AS finishing,
       CASE WHEN jobs.policy_id IS NULL THEN 'no policy'
            WHEN jobs.policy_cancelled = 1 THEN 'cancelled'
            WHEN jobs.policy_inform_only = 1 THEN 'informed'
            WHEN EXISTS (SELECT * FROM policy_violations WHERE policy_violations.record_id = jobs.record_id) THEN 'violated'
            ELSE 'kept' END AS outcome,
       COALESCE(lines.pages, 0) AS pages, COALESCE(lines.pages_color, 0) AS pages_color,
       COALESCE(lines.pages_duplex, 0) AS pages_duplex, COALESCE(lines.sheets, 0) AS sheets,
       COALESCE(lines.cost, 0) AS cost
FROM jobs
LEFT JOIN (
    SELECT record_id, SUM(pages_bw + pages_color + pages_blank) AS pages, SUM(pages_color) AS pages_color,
           SUM(CASE WHEN is_duplex = 1 THEN pages_bw + pages_color + pages_blank ELSE 0 END) AS pages_duplex,
           SUM(sheets) AS sheets,
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
CREATE VIEW IF NOT EXISTS contents_codes AS
SELECT record_id, job_guid, COALESCE((SELECT group_concat(codes, ';') FROM (SELECT paper_code || ',' || (pages_bw + pages_blank) || ',' || pages_color || ',' || sheets || ',' || attribute_mask AS codes FROM copy_lines WHERE record_id = jobs.record_id ORDER BY line)), '') AS copy_lines,
       job_originals, job_copies, pdl_code, finishing_mask
FROM jobs
WHERE job_originals IS NOT NULL;
