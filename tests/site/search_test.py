#!/usr/bin/env python3
"""Searches the site for "toner", with the pages opened as files and from a web server. The search must find both
members.

    search_test.py CHROMIUM SITE
"""
import re
import sys
from pathlib import Path

import browser

FOUND = ["docs/reference/PrintJob.html#tonercoverage", "docs/reference/PrintJob.html#tonersaving"]


def missing(links):
    return [page for page in FOUND if not any(link.endswith("/" + page) for link in links)]


def main(program, site):
    address = Path(site).resolve().as_uri()
    page = browser.page_after(program, f"{address}/docs/errors.html?q=toner", 20)
    files = re.findall(r'<a href="(file:[^"]+)" class="md-search-result__link"', page)
    problems = [f"file: the search does not find {page}" for page in missing(files)]
    from_server = browser.result_of(program, site, "search.js", 60)
    problems += [f"server: the search does not find {page}" for page in missing(from_server)]
    print("\n".join(problems) or f"{len(files)} and {len(from_server)} results, with both members.")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
