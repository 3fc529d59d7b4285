#!/usr/bin/env python3
"""Builds the HTML documentation site and checks it.

    site.py FOLDER

Pages keep their relative paths, so links between them work. The navigation follows docs/README.md; pages that it does
not name come last. Linked files are copied; a link to a folder becomes plain text.
"""

import html.parser
import os
import re
import shutil
import subprocess
import sys
from pathlib import Path
from urllib.parse import unquote

ROOT = Path(__file__).resolve().parent.parent
ABOUT = ("CHANGELOG.md", "CONTRIBUTING.md", "SECURITY.md")
LINK = re.compile(r"\[([^\]]*)\]\(([^)\s#]+)(#[^)\s]*)?\)")
FENCE = re.compile(r"^(```.*?^```)", re.M | re.S)


def title(page):
    return re.search(r"^# (.+)$", (ROOT / page).read_text(encoding="utf-8"), re.M)[1]


def all_pages():
    top = [p for p in ("README.md", *ABOUT) if (ROOT / p).exists()]
    return top + sorted(p.relative_to(ROOT).as_posix() for p in (ROOT / "docs").rglob("*.md"))


def staged_text(page, text, take):
    """The page without links to folders. Passes each linked file to take."""

    def link(match):
        label, target, fragment = match.groups()
        if re.match(r"[a-z]+:", target):
            return match[0]
        path = Path(os.path.normpath((ROOT / page).parent / target))
        if path.is_dir():
            return label
        if not path.exists():
            sys.exit(f"{page}: links to {target}, which does not exist")
        take(path)
        return f"[{label}]({target}{fragment or ''})"

    parts = FENCE.split(text)
    return "".join(part if FENCE.match(part) else LINK.sub(link, part) for part in parts)


def stage(folder):
    """Copies the pages and the files they link to."""
    shutil.rmtree(folder, ignore_errors=True)
    queue, done = [ROOT / p for p in all_pages()] + [ROOT / "docs" / "site.css"], set()
    while queue:
        path = queue.pop()
        if path in done:
            continue
        done.add(path)
        target = folder / path.relative_to(ROOT)
        target.parent.mkdir(parents=True, exist_ok=True)
        if path.suffix == ".md":
            text = staged_text(path.relative_to(ROOT).as_posix(), path.read_text(encoding="utf-8"), queue.append)
            target.write_text(text, encoding="utf-8")
        else:
            shutil.copyfile(path, target)
    return sorted(p.relative_to(folder).as_posix() for p in folder.rglob("*.md"))


def navigation(pages):
    """Section to pages: the headings of docs/README.md and the pages linked below them. docs/decisions has its own
    index page."""
    sections = {"Reference": ["docs/reference/index.md", "docs/reference/members.md", "docs/reference/enumerations.md"]}
    sections["Reference"] += [p for p in pages if re.match(r"docs/reference/[A-Z]", p)]
    named, current = {"README.md", *sections["Reference"]}, None
    for line in (ROOT / "docs" / "README.md").read_text(encoding="utf-8").splitlines():
        if line.startswith("## "):
            current = sections.setdefault(line[len("## "):], [])
        for _, target, _ in LINK.findall(line):
            page = os.path.normpath("docs/" + target)
            if page in pages and page not in named:
                current.append(page)
                named.add(page)
    sections["More"] = [p for p in pages if p not in named and not p.startswith("docs/decisions/")]
    return sections


def quoted(text):
    return "'" + text.replace("'", "''") + "'"


def nav_yaml(sections):
    yield "nav:"
    yield "  - 'Overview': 'README.md'"
    for name, members in sections.items():
        yield f"  - {quoted(name)}:" if members else ""
        for page in members:
            yield f"    - {quoted('Changes' if page == 'CHANGELOG.md' else title(page))}: {quoted(page)}"


class Links(html.parser.HTMLParser):
    def __init__(self):
        super().__init__()
        self.ids, self.links, self.resources = set(), [], []

    def handle_starttag(self, tag, attrs):
        attributes = dict(attrs)
        self.ids |= {attributes[a] for a in ("id", "name") if attributes.get(a)}
        if tag == "a" and attributes.get("href"):
            self.links.append(attributes["href"])
        if tag == "link" and attributes.get("rel") == "stylesheet":
            self.resources.append(attributes["href"])
        if tag in ("script", "img", "iframe") and attributes.get("src"):
            self.resources.append(attributes["src"])


def site_problems(site):
    found = {}
    for page in site.rglob("*.html"):
        found[page] = Links()
        found[page].feed(page.read_text(encoding="utf-8"))
    for page, links in found.items():
        name = page.relative_to(site)
        for url in links.resources:
            if re.match(r"([a-z]+:)?//", url):
                yield f"{name}: fetches {url}"
        for url in links.links + links.resources:
            if re.match(r"[a-z]+:", url):
                continue
            target, _, fragment = url.partition("#")
            path = Path(os.path.normpath(page.parent / unquote(target.partition("?")[0]))) if target else page
            if path.is_dir():
                path = path / "index.html"
            if not path.exists():
                yield f"{name}: links to {url}, which does not exist"
            elif fragment and path in found and unquote(fragment) not in found[path].ids:
                yield f"{name}: links to {url}, which has no such anchor"


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    site = Path(sys.argv[1]).resolve()
    source = site.with_name(site.name + "-source")
    pages = stage(source / "pages")
    config = source / "mkdocs.yml"
    config.write_text("\n".join([f"INHERIT: {ROOT / 'docs' / 'mkdocs.yml'}", f"docs_dir: {source / 'pages'}",
                                 f"site_dir: {site}", *nav_yaml(navigation(pages))]) + "\n", encoding="utf-8")
    subprocess.run(["mkdocs", "build", "--quiet", "--strict", "--clean", "--config-file", config], check=True)
    (site / "404.html").unlink()  # its links start at a web server's root
    problems = sorted(set(site_problems(site)))
    if problems:
        sys.exit("\n".join(problems))
    print(f"{len(list(site.rglob('*.html')))} pages: {site / 'index.html'}")


if __name__ == "__main__":
    main()
