-- The cost of the jobs that violate a rule. A job that violates two rules counts for both.
SELECT trigger_id, action, COUNT(*) AS jobs, SUM(pages) AS pages, ROUND(SUM(cost), 2) AS cost
FROM policy_violations JOIN jobs_in_words ON jobs_in_words.record_id = policy_violations.record_id
GROUP BY trigger_id, action
ORDER BY trigger_id, action;
