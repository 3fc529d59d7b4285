#!/usr/bin/env python3
"""Writes docs/object-reference.md from the comments of JobObjects/JobObjects.idl.

The meaning of every member stands in the interface definition alone, so the reference cannot drift from it.

    generate_reference.py           write the reference
    generate_reference.py --check   change nothing; fail when something is undocumented or the file is old
"""

import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
IDL = ROOT / "JobObjects" / "JobObjects.idl"
REFERENCE = ROOT / "docs" / "object-reference.md"
TAGS = ("Default", "Since", "Errors")


class Doc:
    """One comment block: paragraphs, parameter list, tagged lines and sample."""

    def __init__(self, lines):
        self.paragraphs, self.params, self.tags, self.sample = [], {}, {}, []
        append = None
        for line in lines:
            if line.startswith("    "):
                self.sample.append(line[4:])
                continue
            if self.sample and not line:
                self.sample.append("")
                continue
            tag = re.match(r"(%s|Sample): ?(.*)" % "|".join(TAGS), line)
            item = re.match(r"- (\w+): (.*)", line)
            if not line:
                append = None
            elif tag:
                append = self._start(self.tags, tag[1], tag[2])
            elif item:
                append = self._start(self.params, item[1], item[2])
            elif line.startswith("- "):
                append = self._paragraph(line)
            elif append:
                append(line.strip())
            else:
                append = self._paragraph(line)

    @staticmethod
    def _start(target, key, text):
        target[key] = text

        def append(more):
            target[key] += " " + more

        return append

    def _paragraph(self, text):
        self.paragraphs.append(text)
        index = len(self.paragraphs) - 1

        def append(more):
            self.paragraphs[index] += " " + more

        return append

    def text(self):
        return " ".join(self.paragraphs)


class Member:
    def __init__(self, name, doc):
        self.name, self.doc = name, doc
        self.dispid, self.kinds, self.params = None, [], []

    def access(self):
        return {"propget": "read", "propget propput": "read/write"}.get(" ".join(self.kinds), "method")

    def type(self):
        return self.params[0][1][:-1]

    def is_method(self):
        return self.kinds == ["method"]


class Reader:
    """Reads the interface definition line by line; a statement may span lines."""

    def __init__(self, text):
        self.interfaces, self.classes, self.library, self.problems = {}, [], None, []
        self.comment, self.statement, self.current, self.uuid = [], "", None, None
        for line in text.splitlines():
            self._line(line.strip())

    def _line(self, line):
        if line.startswith("///"):
            self.comment.append(line[4:])
        elif not line.startswith("//") and line:
            self.statement += " " + line
            if line[-1] in ";{" or (line == "]" and self.current is None):
                self._statement(self.statement.strip())
                self.statement = ""

    def _take_doc(self, what):
        if not self.comment:
            self.problems.append(f"{what} is not documented")
        doc, self.comment = Doc(self.comment), []
        return doc

    def _statement(self, text):
        uuid = re.search(r"uuid\(([0-9A-F-]+)\)", text)
        if uuid:
            self.uuid = uuid[1]
        if text.endswith("{"):
            self._open(re.search(r"(interface|library|coclass) (\w+)", text))
        elif text == "};":
            self.current = None
        elif text.startswith("[default]"):
            self.classes[-1]["interface"] = re.search(r"interface (\w+);", text)[1]
        elif "HRESULT" in text:
            self._member(text)

    def _open(self, match):
        kind, name = match.groups()
        doc = self._take_doc(f"{kind} {name}")
        if kind == "library":
            self.library = {"name": name, "uuid": self.uuid, "doc": doc}
        elif kind == "coclass":
            self.classes.append({"name": name, "uuid": self.uuid, "doc": doc})
        else:
            self.current = {"name": name, "uuid": self.uuid, "doc": doc, "members": []}
            self.interfaces[name] = self.current

    def _member(self, text):
        attributes, name, params = re.match(r"\[(.*?)\] HRESULT (\w+)\((.*)\);$", text).groups()
        kind = next((k for k in ("propget", "propput") if k in attributes), "method")
        members = self.current["members"]
        if kind == "propput" and members and members[-1].name == name:
            member = members[-1]
            member.kinds.append(kind)
            return
        member = Member(name, self._take_doc(f"{self.current['name']}.{name}"))
        member.kinds.append(kind)
        member.dispid = int(re.search(r"id\((\d+)\)", attributes)[1])
        member.params = re.findall(r"\[([\w, ]+)\] (\w+\**) (\w+)", params)
        members.append(member)
        if not member.doc.paragraphs:
            self.problems.append(f"{self.current['name']}.{name} has no text")
        if member.is_method():
            given = [p[2] for p in member.params]
            if list(member.doc.params) != given:
                self.problems.append(f"{self.current['name']}.{name} does not describe its parameters {given}")


def cell(text):
    return text.replace("|", "\\|").replace("*", "\\*")


def property_rows(members):
    yield "| Property | Access | Type | DISPID | Meaning | Default | Since |"
    yield "|---|---|---|---|---|---|---|"
    for m in members:
        default = m.doc.tags.get("Default", "").rstrip(".")
        since = m.doc.tags.get("Since", "").rstrip(".")
        cells = (f"`{m.name}`", m.access(), f"`{m.type()}`", m.dispid, cell(m.doc.text()), default, since)
        yield "| " + " | ".join(str(c) for c in cells) + " |"


def method_lines(m):
    given = ", ".join(f"[{a}] {t} {n}" for a, t, n in m.params)
    yield f"#### `{m.name}({given})`"
    yield ""
    yield f"DISPID {m.dispid}. {cell(m.doc.text())}"
    yield ""
    for name, text in m.doc.params.items():
        yield f"- `{name}`: {cell(text)}"
    if m.doc.params:
        yield ""


def class_lines(entry, interface):
    name = entry["name"]
    yield f"## {name}"
    yield ""
    for paragraph in entry["doc"].paragraphs + interface["doc"].paragraphs:
        yield cell(paragraph)
        yield ""
    yield "| Programmatic identifier | Class identifier | Default interface | Interface identifier |"
    yield "|---|---|---|---|"
    yield f"| `Corvane.{name}` | {{{entry['uuid']}}} | `{interface['name']}` | {{{interface['uuid']}}} |"
    yield ""
    members = interface["members"]
    yield "### Properties"
    yield ""
    yield from property_rows([m for m in members if not m.is_method()])
    yield ""
    methods = [m for m in members if m.is_method()]
    if methods:
        yield "### Methods"
        yield ""
    for m in methods:
        yield from method_lines(m)
    failing = [m for m in members if "Errors" in m.doc.tags]
    if failing:
        yield "### Errors"
        yield ""
        for m in failing:
            yield f"- `{m.name}`: {cell(m.doc.tags['Errors'])}"
        yield ""
    yield "### Sample (VBScript)"
    yield ""
    yield "```vb"
    yield from entry["doc"].sample
    yield "```"
    yield ""


def reference(idl):
    library = idl.library
    yield "<!-- Written by docs/generate_reference.py from JobObjects/JobObjects.idl: change the comments there. -->"
    yield "# Object reference"
    yield ""
    yield f"Type library `{library['name']}`, {{{library['uuid']}}}, version 1.0."
    yield ""
    previous = ""
    for paragraph in library["doc"].paragraphs:
        if previous.startswith("- ") and not paragraph.startswith("- "):
            yield ""
        yield cell(paragraph)
        if not paragraph.startswith("- "):
            yield ""
        previous = paragraph
    yield "Classes: " + ", ".join(f"[{c['name']}](#{c['name'].lower()})" for c in idl.classes) + "."
    yield ""
    for entry in idl.classes:
        yield from class_lines(entry, idl.interfaces[entry["interface"]])


def main():
    check = sys.argv[1:] == ["--check"]
    if sys.argv[1:] and not check:
        sys.exit(__doc__)
    idl = Reader(IDL.read_text(encoding="utf-8"))
    problems = idl.problems
    problems += [f"coclass {c['name']} has no sample" for c in idl.classes if not c["doc"].sample]
    if problems:
        sys.exit("\n".join(f"{IDL.name}: {p}" for p in problems))
    text = "\n".join(reference(idl)).rstrip() + "\n"
    if not check:
        REFERENCE.write_text(text, encoding="utf-8")
    elif not REFERENCE.exists() or REFERENCE.read_text(encoding="utf-8") != text:
        sys.exit(f"{REFERENCE.name} is out of date: run docs/generate_reference.py")


if __name__ == "__main__":
    main()
