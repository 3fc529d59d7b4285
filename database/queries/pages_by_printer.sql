-- Printers with the most pages first.
SELECT printer, COUNT(*) AS jobs, SUM(pages) AS pages, SUM(pages_color) AS pages_color, SUM(sheets) AS sheets
FROM jobs_in_words
GROUP BY printer
ORDER BY pages DESC, printer;
