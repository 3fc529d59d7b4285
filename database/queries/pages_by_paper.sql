-- Papers with the most pages first. A job on two papers counts for both.
SELECT paper, COUNT(DISTINCT record_id) AS jobs, SUM(pages) AS pages, SUM(sheets) AS sheets
FROM copy_lines_in_words
WHERE record_id IN (SELECT record_id FROM jobs_in_words)
GROUP BY paper
ORDER BY pages DESC, paper;
