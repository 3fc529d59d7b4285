-- Users with the most pages first.
SELECT user_name, COUNT(*) AS jobs, SUM(pages) AS pages, SUM(pages_color) AS pages_color, SUM(sheets) AS sheets
FROM jobs_in_words
GROUP BY user_name
ORDER BY pages DESC, user_name;
