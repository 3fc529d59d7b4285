-- Pages over time.
SELECT month, COUNT(*) AS jobs, SUM(pages) AS pages, SUM(pages_color) AS pages_color
FROM jobs_in_words
GROUP BY month
ORDER BY month;
