-- Tables and views for the records that "jobobjects export" writes, for SQL Server 2017 or newer. NOT RUN: written from
-- the documentation. docs/database.md explains them.

CREATE TABLE jobs (
    record_id char(16) NOT NULL,
    class nvarchar(100) NOT NULL,
    version nvarchar(max),
    job_guid nvarchar(100),
    customer_code nvarchar(max),
    user_name nvarchar(100),
    user_domain_name nvarchar(100),
    desktop_user_name nvarchar(max),
    desktop_user_domain_name nvarchar(max),
    from_system_user int,
    identifier_type int,
    identifier_data nvarchar(max),
    job_time_local datetime2(3) NOT NULL DEFAULT '0001-01-01',
    job_time_utc datetime2(3),
    job_size int,
    job_name nvarchar(max),
    job_file_name nvarchar(max),
    job_data_type nvarchar(max),
    machine_name nvarchar(max),
    application_name nvarchar(max),
    application_description nvarchar(max),
    log_target_type int,
    log_target nvarchar(100),
    vpn_connected int,
    toner_coverage int,
    toner_saving int,
    data_source int,
    destination_type int,
    destination nvarchar(max),
    phone_number nvarchar(max),
    remote_station_id nvarchar(max),
    duration int,
    job_originals int,
    job_copies int,
    job_pdl nvarchar(max),
    job_finishing nvarchar(max),
    pdl_code int,
    finishing_mask int,
    job_contents_source int,
    job_contents_discard_count int,
    page_counter_copy_lines nvarchar(max),
    page_counter_error_message nvarchar(max),
    page_counter_result nvarchar(max),
    windows_pages int,
    windows_originals int,
    dev_mode_fields int,
    dev_mode_paper_size int,
    dev_mode_copies int,
    dev_mode_color int,
    dev_mode_duplex int,
    policy_id int,
    policy_name nvarchar(max),
    policy_has_rules int,
    policy_cancelled int,
    policy_inform_only int,
    PRIMARY KEY (record_id)
);
-- A job that is exported again with other contents is the same job; the first one stays.
CREATE UNIQUE INDEX jobs_by_guid ON jobs (class, job_guid, job_time_local) WHERE job_guid <> '';
CREATE INDEX jobs_by_time ON jobs (job_time_local);

CREATE TABLE copy_lines (
    record_id char(16) NOT NULL,
    line int NOT NULL,
    paper_size nvarchar(max),
    paper_dimensions nvarchar(max),
    attributes nvarchar(max),
    sheets int,
    pages_bw int,
    pages_color int,
    pages_blank int,
    is_duplex int,
    paper_code int,
    attribute_mask int,
    PRIMARY KEY (record_id, line),
    FOREIGN KEY (record_id) REFERENCES jobs (record_id)
);

CREATE TABLE policy_violations (
    record_id char(16) NOT NULL,
    trigger_id int NOT NULL,
    action nvarchar(max),
    PRIMARY KEY (record_id, trigger_id),
    FOREIGN KEY (record_id) REFERENCES jobs (record_id)
);

CREATE TABLE logical_printers (
    record_id char(16) NOT NULL,
    version nvarchar(max),
    logical_printer_guid nvarchar(100),
    customer_code nvarchar(max),
    machine_guid nvarchar(max),
    first_transaction_date datetime2(3),
    last_transaction_date datetime2(3),
    printer_name nvarchar(max),
    port_name nvarchar(max),
    is_secure_print int,
    share_name nvarchar(max),
    server_name nvarchar(max),
    location nvarchar(max),
    comments nvarchar(max),
    attributes int,
    color_capable int,
    build_number int,
    tracker_version nvarchar(max),
    driver_name nvarchar(max),
    driver_file_name nvarchar(max),
    driver_data_file_name nvarchar(max),
    driver_file_description nvarchar(max),
    driver_company_name nvarchar(max),
    driver_file_version nvarchar(max),
    print_monitor_name nvarchar(max),
    print_monitor_file_name nvarchar(max),
    print_monitor_file_description nvarchar(max),
    print_monitor_company_name nvarchar(max),
    print_monitor_file_version nvarchar(max),
    print_processor_name nvarchar(max),
    printer_info nvarchar(max),
    destination nvarchar(max),
    PRIMARY KEY (record_id)
);

-- Codes and words of the catalogue, from "jobobjects catalogue --sql". Dimensions are tenths of a millimetre.
CREATE TABLE paper_sizes (code int PRIMARY KEY, name nvarchar(200) NOT NULL, width int, height int);
CREATE TABLE page_attributes (code int PRIMARY KEY, name nvarchar(200) NOT NULL, pair int);
CREATE TABLE finishing_options (code int PRIMARY KEY, name nvarchar(200) NOT NULL);
CREATE TABLE languages (code int PRIMARY KEY, name nvarchar(200) NOT NULL);

-- Prices of a page and of a sheet, by paper. Code 0 is the price of papers that are not listed.
CREATE TABLE prices (paper_code int PRIMARY KEY, page_bw decimal(10, 4) NOT NULL, page_color decimal(10, 4) NOT NULL, sheet decimal(10, 4) NOT NULL);
INSERT INTO prices VALUES (0, 0.01, 0.06, 0.008), (4, 0.02, 0.12, 0.016);

GO
-- The newest record of each logical printer.
CREATE OR ALTER VIEW printers AS
SELECT * FROM (
    SELECT logical_printers.*,
           ROW_NUMBER() OVER (PARTITION BY logical_printer_guid ORDER BY last_transaction_date DESC, record_id) AS age
    FROM logical_printers) AS ranked
WHERE age = 1;
GO

-- Copy lines with their paper and attributes in words.
CREATE OR ALTER VIEW copy_lines_in_words AS
SELECT copy_lines.record_id, copy_lines.line, COALESCE(paper_sizes.name, copy_lines.paper_size) AS paper,
       (SELECT STRING_AGG(name, ',') WITHIN GROUP (ORDER BY code) FROM page_attributes WHERE attribute_mask & code <> 0) AS page_attributes,
       CAST(pages_bw AS bigint) + pages_color + pages_blank AS pages,
       pages_bw, pages_color, pages_blank, sheets, is_duplex, paper_code
FROM copy_lines LEFT JOIN paper_sizes ON paper_sizes.code = copy_lines.paper_code;
GO

-- Jobs with their user, printer, finishing and outcome in words, and the sums of their copy lines.
CREATE OR ALTER VIEW jobs_in_words AS
SELECT jobs.record_id, jobs.class, jobs.job_time_local, CASE WHEN jobs.job_time_local > '0001-01-01' THEN FORMAT(jobs.job_time_local, 'yyyy-MM') ELSE '' END AS month, jobs.job_name,
       CASE WHEN jobs.class <> 'PrintJob' THEN jobs.identifier_data
            WHEN jobs.user_domain_name = '' THEN jobs.user_name
            ELSE jobs.user_domain_name + '\' + jobs.user_name END AS user_name,
       CASE jobs.log_target_type
            WHEN 1 THEN COALESCE(printers.printer_name, jobs.log_target)
            WHEN 2 THEN 'Device ' + jobs.log_target
            WHEN 3 THEN jobs.log_target
            ELSE '' END AS printer,
       languages.name AS language,
       (SELECT STRING_AGG(name, ',') WITHIN GROUP (ORDER BY code) FROM finishing_options WHERE jobs.finishing_mask & code <> 0) AS finishing,
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
GO

-- The arguments of GenerateContentsFromDBInfo.
CREATE OR ALTER VIEW contents_codes AS
SELECT record_id, job_guid, COALESCE((SELECT STRING_AGG(CAST(paper_code AS varchar(12)) + ',' + CAST((pages_bw + pages_blank) AS varchar(12)) + ',' + CAST(pages_color AS varchar(12)) + ',' + CAST(sheets AS varchar(12)) + ',' + CAST(attribute_mask AS varchar(12)), ';') WITHIN GROUP (ORDER BY line) FROM copy_lines WHERE record_id = jobs.record_id), '') AS copy_lines,
       job_originals, job_copies, pdl_code, finishing_mask
FROM jobs
WHERE job_originals IS NOT NULL;
