#!/usr/bin/env python3
"""Reports simulated jobs, a tenth of them damaged, compares the page's numbers with sums made from the jobs themselves,
and opens the page in Chromium at three widths, light and dark, and on paper.

    report_test.py FOLDER JOBS PROGRAM...
"""
import html
import html.parser
import json
import re
import sys
from collections import defaultdict
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "site"))
import expected_sums
from browser import chromium, page_after
from database_test import SEED, tool, work_in
from simulated_jobs import write_jobs

WIDTHS = (360, 768, 1280)
SHOWN = 15
# Measures the page in frames of several widths, which share its origin.
MEASURE = """<script>onload = () => { document.title = JSON.stringify([...document.querySelectorAll("iframe")].map(frame => {
const page = frame.contentDocument, style = frame.contentWindow.getComputedStyle(page.body);
const right = element => element.getBoundingClientRect().right;
return {width: frame.clientWidth, needed: page.documentElement.scrollWidth, ground: style.backgroundColor,
tables: [...page.querySelectorAll("section table")].filter(t => right(t) > right(t.closest("section"))).map(t => t.id),
bars: [...page.querySelectorAll("rect")].filter(r => r.getBoundingClientRect().height > 0).length}; })); }</script>"""


class Tables(html.parser.HTMLParser):
    """The texts of the cells by table, and the texts outside."""

    def __init__(self):
        super().__init__()
        self.tables, self.rows, self.is_cell, self.text = {}, None, False, ""

    def handle_starttag(self, tag, attrs):
        if tag == "table":
            self.rows = self.tables[dict(attrs)["id"]] = []
        elif tag == "tr":
            self.rows.append([])
        elif tag in ("th", "td"):
            self.is_cell = True
            self.rows[-1].append("")

    def handle_endtag(self, tag):
        self.is_cell = self.is_cell and tag not in ("th", "td")

    def handle_data(self, data):
        self.text += data
        if self.is_cell:
            self.rows[-1][-1] += data


def formatted(rows):
    return [[f"{cell:,}" if isinstance(cell, int) else str(cell) for cell in row] for row in rows]


def counted(jobs, key):
    """Rows as the page has them: jobs, pages, colour pages, sheets."""
    return expected_sums.sums(jobs, key, expected_sums.total, expected_sums.color, expected_sums.sheets)


def check_ranking(rows, counts, noun):
    ranked = sorted(counts, key=lambda row: (-row[2], row[0].encode("utf-8")))
    if len(ranked) > SHOWN + 1:
        rest = ranked[SHOWN:]
        ranked = [*ranked[:SHOWN], (f"{len(rest)} other {noun}", *map(sum, list(zip(*rest))[1:]))]
    assert rows[1:] == formatted(ranked), f"{rows[1:3]}\n{formatted(ranked)[:2]}"


def by_paper(jobs):
    papers = defaultdict(lambda: [0] * 4)
    for job in jobs:
        for line in job["lines"]:
            for at, number in enumerate((1, expected_sums.pages(line), line["color"], line["sheets"])):
                papers[line["paper"]][at] += number
    return [(name, *row) for name, row in papers.items()]


def check_numbers(page, jobs, bad):
    parser = Tables()
    parser.feed(page)
    tables = parser.tables
    check_ranking(tables["users"], counted(jobs, expected_sums.user), "users")
    check_ranking(tables["printers"], counted(jobs, expected_sums.printer), "printers")
    check_ranking(tables["papers"], by_paper(jobs), "papers")
    assert tables["months"][1:] == formatted(sorted(counted(jobs, lambda job: job["time"].strftime("%Y-%m"))))
    kinds = {row[0]: row[1:] for row in formatted(counted(jobs, lambda job: job["class"].removesuffix("Job")))}
    assert {row[0]: row[1:] for row in tables["kinds"][1:]} == kinds
    outcomes = {name.capitalize(): row for name, *row in formatted(expected_sums.sums(
        jobs, expected_sums.outcome, expected_sums.total))}
    assert {row[0]: [row[1], row[3]] for row in tables["outcomes"][1:]} == outcomes
    rules = sorted((f"Rule {rule}", action, *row) for rule, action, *row, _ in expected_sums.by_rule(jobs))
    assert tables["rules"][1:] == formatted(rules)
    (pages, color, duplex, percent_color, percent_duplex), = expected_sums.shares(jobs)
    sheets = sum(map(expected_sums.sheets, jobs))
    facts = " ".join(re.search("<dl.*</dl>", page, re.S)[0].replace("</dd>", " ").split())
    for number in (f"{len(jobs):,}", f"{pages:,}", f"{sheets:,}", f"{percent_color} %", f"{color:,} pages",
                   f"{percent_duplex} %", f"{duplex:,} pages"):
        assert f"<dd>{number} " in facts, f"{number} is not in {facts}"
    assert f"This report is partial. {bad:,} records or files could not be read" in parser.text
    assert len(tables["problems"]) == min(bad, 200) + 1
    # Bars of pages: each has a title with its numbers.
    bars = re.findall(r"<title>[^<]*: ([\d,]+) pages, ([\d,]+) in colour</title>", page)
    assert [sum(int(bar[at].replace(",", "")) for bar in bars) for at in (0, 1)] == [pages, color]
    assert "http" not in page and "url(" not in page and "@import" not in page, "the page needs the network"


def check_charts(program):
    """A bar is a day, a week, a month or a year; times without jobs have one too."""
    copy_job = ('<CopyJob Version="4.0"><JobTimeLocal>{}T10:00:00</JobTimeLocal><JobContents><JobCopyLines/>'
                "</JobContents></CopyJob>")
    for unit, bars, first, last in (("day", 10, "2025-02-24", "2025-03-05"), ("week", 10, "2025-01-01", "2025-03-05"),
                                    ("month", 48, "2020-01-31", "2023-12-01"), ("year", 36, "1990-07-01", "2025-01-01")):
        Path("two.xml").write_text(copy_job.format(first) + copy_job.format(last), encoding="utf-8")
        tool(program, "report", "-o", "two.html", "two.xml")
        page = Path("two.html").read_text(encoding="utf-8")
        assert f"One bar per {unit}." in page and page.count("<g><title>") == bars, f"{unit}: {page.count('<g>')} bars"


def check_widths(page):
    frames = "".join(f'<iframe style="width:{width}px;height:4000px;border:0" srcdoc="{html.escape(page)}"></iframe>'
                     for width in WIDTHS)
    Path("frames.html").write_text(f"<!DOCTYPE html><meta charset=utf-8><body>{frames}{MEASURE}", encoding="utf-8")
    grounds = []
    for scheme in (0, 1):  # dark, light
        dom = page_after("chromium", Path("frames.html").resolve().as_uri(), 20,
                         f"--blink-settings=preferredColorScheme={scheme}")
        measured = json.loads(html.unescape(re.search("<title>(.*?)</title>", dom)[1]))
        assert [frame["width"] for frame in measured] == list(WIDTHS), measured
        for frame in measured:
            assert frame["needed"] <= frame["width"], f"the page is wider than its window: {frame}"
            assert frame["tables"] == [] and frame["bars"] > 20, frame
        grounds.append(measured[0]["ground"])
    assert grounds[0] != grounds[1], "the page has one colour scheme"


def check_paper(page, size, box):
    Path("paper.html").write_text(page.replace("</style>", f"@page {{ size: {size}; }}</style>"), encoding="utf-8")
    with chromium("chromium", "--no-pdf-header-footer", f"--print-to-pdf={Path('paper.pdf').resolve()}",
                  Path("paper.html").resolve().as_uri()) as process:
        assert process.wait(timeout=120) == 0
    pdf = Path("paper.pdf").read_bytes()
    sheets = re.findall(rb"/MediaBox \[0 0 ([\d.]+) ([\d.]+)\]", pdf)
    assert sheets and all((round(float(x)), round(float(y))) == box for x, y in sheets), f"{size}: {sheets}"
    return len(sheets)


def main(folder, count, *program):
    count = int(count)
    with work_in(folder, *program) as program:
        jobs, bad = write_jobs(Path("jobs"), count, SEED, records_per_file=max(count // 4, 1), damage=0.1)
        tool(program, "report", "-o", "report.html", "jobs", expected=5)
        page = Path("report.html").read_text(encoding="utf-8")
        check_numbers(page, jobs, bad)
        # The same jobs again count once.
        tool(program, "report", "-o", "twice.html", "jobs", "jobs", expected=5)
        twice = Path("twice.html").read_text(encoding="utf-8")
        assert f" {len(jobs):,} jobs came more than once and counted once." in twice
        check_numbers(twice, jobs, 2 * bad)
        check_charts(program)
        check_widths(page)
        sheets = [check_paper(page, "A4", (595, 842)), check_paper(page, "letter", (612, 792))]
    print(f"the report of {len(jobs)} jobs agrees, fits {len(WIDTHS)} widths, and prints on {sheets} sheets")
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
