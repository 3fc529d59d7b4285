-- Loads an export into PostgreSQL. Run it in the folder of the export; schema.sql comes first:
--
--   psql -d jobs -f schema.sql -f load.sql
--
-- Rows that are already there stay as they are.
\set ON_ERROR_STOP on
SET client_min_messages = warning;
SET client_encoding = 'UTF8';
BEGIN;
CREATE TEMP TABLE new_jobs ON COMMIT DROP AS SELECT * FROM jobs WHERE false;
CREATE TEMP TABLE new_copy_lines ON COMMIT DROP AS SELECT * FROM copy_lines WHERE false;
CREATE TEMP TABLE new_policy_violations ON COMMIT DROP AS SELECT * FROM policy_violations WHERE false;
CREATE TEMP TABLE new_logical_printers ON COMMIT DROP AS SELECT * FROM logical_printers WHERE false;
ALTER TABLE new_copy_lines DROP COLUMN job_time_local;
ALTER TABLE new_policy_violations DROP COLUMN job_time_local;
\copy new_jobs FROM 'jobs.csv' WITH (FORMAT csv, HEADER match)
\copy new_copy_lines FROM 'copy_lines.csv' WITH (FORMAT csv, HEADER match)
\copy new_policy_violations FROM 'policy_violations.csv' WITH (FORMAT csv, HEADER match)
\copy new_logical_printers FROM 'logical_printers.csv' WITH (FORMAT csv, HEADER match)
UPDATE new_jobs SET job_time_local = '-infinity' WHERE job_time_local IS NULL;
ANALYZE new_jobs, new_copy_lines, new_policy_violations;

DO $$
DECLARE
    month date;
    parent text;
BEGIN
    FOR month IN SELECT DISTINCT date_trunc('month', job_time_local) FROM new_jobs WHERE isfinite(job_time_local) LOOP
        FOREACH parent IN ARRAY ARRAY['jobs', 'copy_lines', 'policy_violations'] LOOP
            EXECUTE format('CREATE TABLE IF NOT EXISTS %I PARTITION OF %I FOR VALUES FROM (%L) TO (%L)',
                           parent || to_char(month, '_YYYY_MM'), parent, month, month + interval '1 month');
        END LOOP;
    END LOOP;
END $$;

INSERT INTO jobs SELECT * FROM new_jobs ON CONFLICT DO NOTHING;
INSERT INTO copy_lines
SELECT new_copy_lines.*, job_time_local
FROM new_copy_lines JOIN new_jobs USING (record_id) JOIN jobs USING (record_id, job_time_local)
ON CONFLICT DO NOTHING;
INSERT INTO policy_violations
SELECT new_policy_violations.*, job_time_local
FROM new_policy_violations JOIN new_jobs USING (record_id) JOIN jobs USING (record_id, job_time_local)
ON CONFLICT DO NOTHING;
INSERT INTO logical_printers SELECT * FROM new_logical_printers ON CONFLICT DO NOTHING;

SELECT 'jobs in the export: ' || (SELECT count(*) FROM new_jobs) || ', in the database: ' ||
       (SELECT count(*) FROM jobs) || ', left out because the job is there with other contents: ' ||
       (SELECT count(*) FROM new_jobs LEFT JOIN jobs USING (record_id, job_time_local) WHERE jobs.class IS NULL)
       AS result;
COMMIT;
