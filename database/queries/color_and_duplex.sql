-- Shares of the pages, in percent.
SELECT SUM(pages) AS pages, SUM(pages_color) AS pages_color, SUM(pages_duplex) AS pages_duplex,
       ROUND(100.0 * SUM(pages_color) / NULLIF(SUM(pages), 0), 1) AS percent_color,
       ROUND(100.0 * SUM(pages_duplex) / NULLIF(SUM(pages), 0), 1) AS percent_duplex
FROM jobs_in_words;
