-- Jobs, pages and sheets by kind of job.
SELECT class, COUNT(*) AS jobs, SUM(pages) AS pages, SUM(sheets) AS sheets
FROM jobs_in_words
GROUP BY class
ORDER BY class;
