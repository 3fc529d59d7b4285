-- Loads an export into SQL Server. NOT RUN: written from the documentation. schema.sql comes first. Set the folder of the
-- export, as the server sees it:
--
--   sqlcmd -d jobs -i load.sql -v folder="C:\export"
--
-- Rows that are already there stay as they are.
SET XACT_ABORT ON;
BEGIN TRANSACTION;
SELECT TOP 0 * INTO #new_jobs FROM jobs;
SELECT TOP 0 * INTO #new_copy_lines FROM copy_lines;
SELECT TOP 0 * INTO #new_policy_violations FROM policy_violations;
SELECT TOP 0 * INTO #new_logical_printers FROM logical_printers;
ALTER TABLE #new_jobs ALTER COLUMN job_time_local datetime2(3) NULL;
BULK INSERT #new_jobs FROM '$(folder)\jobs.csv'
WITH (FORMAT = 'CSV', CODEPAGE = '65001', FIRSTROW = 2, ROWTERMINATOR = '0x0d0a', KEEPNULLS);
BULK INSERT #new_copy_lines FROM '$(folder)\copy_lines.csv'
WITH (FORMAT = 'CSV', CODEPAGE = '65001', FIRSTROW = 2, ROWTERMINATOR = '0x0d0a', KEEPNULLS);
BULK INSERT #new_policy_violations FROM '$(folder)\policy_violations.csv'
WITH (FORMAT = 'CSV', CODEPAGE = '65001', FIRSTROW = 2, ROWTERMINATOR = '0x0d0a', KEEPNULLS);
BULK INSERT #new_logical_printers FROM '$(folder)\logical_printers.csv'
WITH (FORMAT = 'CSV', CODEPAGE = '65001', FIRSTROW = 2, ROWTERMINATOR = '0x0d0a', KEEPNULLS);
UPDATE #new_jobs SET job_time_local = '0001-01-01' WHERE job_time_local IS NULL;

WITH numbered AS (
    SELECT *, ROW_NUMBER() OVER (PARTITION BY class, CASE WHEN job_guid = '' THEN record_id ELSE job_guid END, job_time_local
                                 ORDER BY record_id) AS number
    FROM #new_jobs)
DELETE FROM numbered WHERE number > 1;
INSERT INTO jobs
SELECT * FROM #new_jobs AS new
WHERE NOT EXISTS (SELECT * FROM jobs WHERE jobs.record_id = new.record_id)
  AND NOT EXISTS (SELECT * FROM jobs WHERE new.job_guid <> '' AND jobs.job_guid = new.job_guid AND jobs.class = new.class
                  AND jobs.job_time_local = new.job_time_local);
INSERT INTO copy_lines
SELECT DISTINCT new.* FROM #new_copy_lines AS new JOIN jobs ON jobs.record_id = new.record_id
WHERE NOT EXISTS (SELECT * FROM copy_lines AS old WHERE old.record_id = new.record_id AND old.line = new.line);
INSERT INTO policy_violations
SELECT DISTINCT new.* FROM #new_policy_violations AS new JOIN jobs ON jobs.record_id = new.record_id
WHERE NOT EXISTS (SELECT * FROM policy_violations AS old WHERE old.record_id = new.record_id AND old.trigger_id = new.trigger_id);
INSERT INTO logical_printers
SELECT DISTINCT new.* FROM #new_logical_printers AS new
WHERE NOT EXISTS (SELECT * FROM logical_printers AS old WHERE old.record_id = new.record_id);
COMMIT;
