-- What the policy did.
SELECT outcome, COUNT(*) AS jobs, SUM(pages) AS pages
FROM jobs_in_words
GROUP BY outcome
ORDER BY outcome;
