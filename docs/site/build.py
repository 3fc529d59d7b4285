#!/usr/bin/env python3
"""Builds the HTML documentation site and checks it.

    build.py FOLDER

Pages keep their relative paths, so links between them work. The navigation follows docs/README.md; pages that it does
not name come last. A linked source file becomes a page that shows it, other linked files are copied. A link to a folder
leads to its README.md or to a list of its files.
"""

import html.parser
import os
import re
import shutil
import subprocess
import sys
from pathlib import Path
from urllib.parse import unquote

ROOT = Path(__file__).resolve().parents[2]
SETTINGS = Path(__file__).resolve().with_name("mkdocs.yml")
ABOUT = ("CHANGELOG.md", "CONTRIBUTING.md", "SECURITY.md")
LINK = re.compile(r"\[([^\]]*)\]\(([^)\s#]+)(#[^)\s]*)?\)")
FENCE = re.compile(r"^(```.*?^```)", re.M | re.S)
# Endings of source files, and languages of code blocks, with the names that the highlighter has for them.
HIGHLIGHTED = {".cpp": "cpp", ".cs": "csharp", ".h": "cpp", ".idl": "cpp", ".js": "js", ".ps1": "powershell",
               ".py": "python", ".vbs": "vbscript", ".xml": "xml", ".xsd": "xml", ".sch": "xml"}
LANGUAGES = {"vb": "vbscript", "reg": "registry", "idl": "cpp"}
# Licences of the theme, whose styles and scripts are part of the site.
THEME_LICENCES = Path("/usr/share/doc/mkdocs-material/copyright")
# Words that may break before a capital: long names of members.
LONG_NAME = re.compile(r"[A-Za-z0-9]{10,}")


def title(page):
    return re.search(r"^# (.+)$", (ROOT / page).read_text(encoding="utf-8"), re.M)[1]


def all_pages():
    top = [p for p in ("README.md", *ABOUT) if (ROOT / p).exists()]
    return top + sorted(p.relative_to(ROOT).as_posix() for p in (ROOT / "docs").rglob("*.md"))


def staged_link(page, target, take):
    """The target of a link in the staged page. Passes the linked file or folder to take."""
    path = Path(os.path.normpath((ROOT / page).parent / target))
    if not path.exists():
        sys.exit(f"{page}: links to {target}, which does not exist")
    if path.is_dir() and (path / "README.md").exists():
        path /= "README.md"
    take(path)
    return os.path.relpath(staged_path(path), (ROOT / page).parent)


def staged_path(path):
    if path.is_dir():
        return path / "index.md"
    return path.with_name(path.name + ".md") if path.suffix in HIGHLIGHTED else path


def staged_text(page, text, take):
    def link(match):
        label, target, fragment = match.groups()
        return match[0] if re.match(r"[a-z]+:", target) else \
            f"[{label}]({staged_link(page, target, take)}{fragment or ''})"

    def block(code):
        return re.sub(r"\A```(\w+)", lambda m: "```" + LANGUAGES.get(m[1], m[1]), code)

    return "".join(block(part) if FENCE.match(part) else LINK.sub(link, part) for part in FENCE.split(text))


def list_of_files(folder, take):
    yield f"# {folder.relative_to(ROOT).as_posix()}"
    yield ""
    for path in sorted(folder.iterdir()):
        if path.is_file():
            take(path)
            yield f"- [{path.name}]({os.path.relpath(staged_path(path), folder)})"


def source_page(path):
    text = path.read_text(encoding="utf-8").rstrip()
    return f"# {path.name}\n\n[Open the file]({path.name})\n\n```{HIGHLIGHTED[path.suffix]}\n{text}\n```\n"


def stage(folder):
    """Copies the pages and the files they link to."""
    shutil.rmtree(folder, ignore_errors=True)
    queue, done = [ROOT / p for p in all_pages()], set()
    while queue:
        path = queue.pop()
        if path in done:
            continue
        done.add(path)
        target = folder / staged_path(path).relative_to(ROOT)
        target.parent.mkdir(parents=True, exist_ok=True)
        if path.is_dir():
            target.write_text("\n".join(list_of_files(path, queue.append)), encoding="utf-8")
        elif path.suffix == ".md":
            text = staged_text(path.relative_to(ROOT).as_posix(), path.read_text(encoding="utf-8"), queue.append)
            target.write_text(text, encoding="utf-8")
        else:
            shutil.copyfile(path, target.with_name(path.name))
            if path.suffix in HIGHLIGHTED:
                target.write_text(source_page(path), encoding="utf-8")
    return sorted(p.relative_to(ROOT).as_posix() for p in done if p.suffix == ".md")


def navigation(pages):
    """Section to pages: the headings of docs/README.md and the pages linked below them. docs/decisions has its own
    index page."""
    names = "index", "members", "enumerations", "vocabulary"
    sections = {"Reference": [f"docs/reference/{name}.md" for name in names]}
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
        if tag == "link":
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


def with_breaks(page):
    """The parts of an HTML page, with optional line breaks before the capitals of long names."""
    inside = None
    for part in re.split(r"(<[^>]*>)", page):
        tag = re.match(r"</?(\w+)", part)
        if tag and tag[1] in ("pre", "script", "style", "title"):
            inside = None if part[1] == "/" else tag[1]
        elif not tag and not inside:
            part = LONG_NAME.sub(lambda m: re.sub(r"(?<=[a-z0-9])(?=[A-Z])", "<wbr>", m[0]), part)
        yield part


def finish(site):
    for name in ("404.html", "sitemap.xml", "sitemap.xml.gz"):  # for web servers only
        (site / name).unlink()
    shutil.rmtree(site / "assets" / "javascripts" / "lunr")  # searches in other languages
    for path in site.rglob("*.map"):
        path.unlink()
    shutil.copyfile(THEME_LICENCES, site / "assets" / "copyright")
    index = site / "search" / "search_index.json"
    # Pages from a server read the index itself, pages opened as files this script.
    index.with_suffix(".js").write_text(f"var __index = {index.read_text(encoding='utf-8')};\n", encoding="utf-8")
    for path in site.rglob("*.html"):
        path.write_text("".join(with_breaks(path.read_text(encoding="utf-8"))), encoding="utf-8")


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    site = Path(sys.argv[1]).resolve()
    source = site.with_name(site.name + "-source")
    pages = stage(source / "pages")
    config = source / "mkdocs.yml"
    config.write_text("\n".join([f"INHERIT: {SETTINGS}", f"docs_dir: {source / 'pages'}", f"site_dir: {site}",
                                 "theme:", f"  custom_dir: {SETTINGS.with_name('theme')}",
                                 *nav_yaml(navigation(pages))]) + "\n", encoding="utf-8")
    subprocess.run(["mkdocs", "build", "--quiet", "--strict", "--clean", "--config-file", config], check=True)
    finish(site)
    problems = sorted(set(site_problems(site)))
    if problems:
        sys.exit("\n".join(problems))
    print(f"{len(list(site.rglob('*.html')))} pages: {site / 'index.html'}")


if __name__ == "__main__":
    main()
