#!/usr/bin/env python3
"""Measures every page of the site in Chromium at three widths, light and dark: nothing may be wider than the screen or
hard to read, or come from another server.

    pages_test.py CHROMIUM SITE
"""
import sys
from pathlib import Path

import browser

MEASUREMENTS = 6  # per page


def main(program, site):
    pages = len(list(Path(site).rglob("*.html")))
    result = browser.result_of(program, site, "measure.js", 280)
    print("\n".join(result["problems"]))
    if not pages or result["measured"] != MEASUREMENTS * pages:
        return f"{result['measured']} measurements of {pages} pages"
    print(f"{pages} pages measured, {len(result['problems'])} problems")
    return 1 if result["problems"] else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
