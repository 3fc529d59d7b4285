#!/usr/bin/env python3
"""Measures every page of the site in Chromium at three widths, light and dark: nothing may be wider than the screen or
hard to read, or come from another server. The scheme is the one that the system prefers.

    pages_test.py CHROMIUM SITE
"""
import re
import sys
from pathlib import Path

import browser

MEASUREMENTS = 6  # per page


def scheme_problems(program, site):
    for scheme, arguments in (("default", []), ("slate", ["--force-dark-mode"])):
        page = browser.page_after(program, (Path(site).resolve() / "index.html").as_uri(), 5, *arguments)
        found = re.search(r'<body[^>]* data-md-color-scheme="(\w+)"', page)
        if not found or found[1] != scheme:
            yield f"the scheme is {found and found[1]}, not {scheme}"


def main(program, site):
    pages = len(list(Path(site).rglob("*.html")))
    result = browser.result_of(program, site, "measure.js", 550)
    problems = result["problems"] + list(scheme_problems(program, site))
    print("\n".join(problems))
    if not pages or result["measured"] != MEASUREMENTS * pages:
        return f"{result['measured']} measurements of {pages} pages"
    print(f"{pages} pages measured, {len(problems)} problems")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
