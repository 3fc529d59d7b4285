#!/usr/bin/env python3
"""Writes the object reference, docs/reference/*.md, from the comments of JobObjects/JobObjects.idl.

The members are described only in the interface definition, so the reference cannot drift from it. The samples come from
docs/samples; the tests run them.

    generate_reference.py           write the reference
    generate_reference.py --check   write nothing; fail if something is undocumented or a page is out of date
"""

import re
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "JobObjects"))
import idl  # noqa: E402

FOLDER = idl.ROOT / "docs" / "reference"
SAMPLES = idl.ROOT / "docs" / "samples"
LANGUAGES = (("PowerShell", "ps1", "powershell"), ("VBScript", "vbs", "vb"), ("C++", "cpp", "cpp"))
TYPES = {"BSTR": "String", "LONG": "Long", "VARIANT_BOOL": "Boolean", "DATE": "Date"}
NOTE = "<!-- Written by docs/generate_reference.py from the comments of JobObjects/JobObjects.idl: change them there. -->"
COMMON_ERRORS = "[those of every member](index.md#errors-of-every-member)"


def escape(text):
    """Comment text as Markdown: markup and wildcards escaped, XML and results as code."""
    text = re.sub(r"<[^ ]*>", lambda m: f"`{m[0]}`", text)
    text = re.sub(r"\b(E_[A-Z]+|0x[0-9A-F]{3,8}|S_OK|VARIANT_TRUE|VARIANT_FALSE)\b", r"`\1`", text)
    return text.replace("|", "\\|").replace("*", "\\*").replace("``", "`")


def anchor(name):
    return name.lower()


def type_text(type_name, links):
    if type_name.rstrip("*") in links:
        return links[type_name.rstrip("*")]
    return TYPES[type_name.rstrip("*")]


def first_sentence(text):
    return re.split(r"(?<=\.) (?=[A-Z])", text)[0]


def definition(member, links):
    """The list of facts below a member's description."""
    doc = member.doc
    if member.is_method():
        result = member.type()
        yield "Returns", type_text(result, links) if result else "nothing"
    else:
        yield "Type", f"{type_text(member.type(), links)} (`{member.type()}`), {member.access()}"
    for tag in ("Units", "Range"):
        if doc.tag(tag):
            yield tag, escape(doc.tag(tag))
    if not member.is_method():
        if not doc.tag("Range") and member.type() == "BSTR" and member.access() == "read/write":
            yield "Range", "any text"
        yield "Default", escape(doc.tag("Default"))
        yield "Stored", escape(doc.tag("Stored"))
    own = doc.tag("Errors")
    yield "Errors", f"{escape(own)}; and {COMMON_ERRORS}" if own and not own.startswith("none") else (
        f"{escape(own.replace('none of its own', COMMON_ERRORS))}" if own else COMMON_ERRORS)
    yield "Since", f"library version {member.since}"
    yield "DISPID", str(member.dispid)


def value_table(member):
    yield "| Value | Name | Meaning |"
    yield "|---|---|---|"
    for number, name, text in member.doc.values:
        yield f"| {number} | `{name}` | {escape(text)} |"
    yield ""


def member_lines(member, links):
    yield f"### {member.name}"
    yield ""
    for paragraph in member.doc.paragraphs:
        yield escape(paragraph)
        yield ""
    if member.is_method():
        given = [f"[{a.replace(' ', '')}] {t} {n}" for a, t, n in member.params]
        yield "```idl"
        if len(given) > 2:
            yield f"HRESULT {member.name}("
            yield from (f"    {g}," for g in given[:-1])
            yield f"    {given[-1]})"
        else:
            yield f"HRESULT {member.name}({', '.join(given)})"
        yield "```"
        yield ""
        if member.doc.params:
            yield "| Parameter | Type | |"
            yield "|---|---|---|"
            for (attributes, kind, name) in member.params:
                way = "out, result" if "retval" in attributes else attributes
                yield f"| `{name}` | {type_text(kind, links)}, {way} | {escape(member.doc.params[name])} |"
            yield ""
    if member.doc.values:
        yield from value_table(member)
    for label, text in definition(member, links):
        yield f"- **{label}:** {text}"
    yield ""


def member_table(members, links, kind):
    if kind == "property":
        yield "| Property | Type | Access | Meaning |"
        yield "|---|---|---|---|"
    else:
        yield "| Method | Returns | Meaning |"
        yield "|---|---|---|"
    for m in members:
        name = f"[{m.name}](#{anchor(m.name)})"
        meaning = escape(first_sentence(m.doc.text()))
        if kind == "property":
            yield f"| {name} | {type_text(m.type(), links)} | {m.access()} | {meaning} |"
        else:
            yield f"| {name} | {type_text(m.type(), links) if m.type() else 'nothing'} | {meaning} |"
    yield ""


def sample_lines(name):
    for language, suffix, fence in LANGUAGES:
        yield f"### {language}"
        yield ""
        yield f"```{fence}"
        yield (SAMPLES / f"{name}.{suffix}").read_text(encoding="utf-8").rstrip()
        yield "```"
        yield ""
        if language == "VBScript":
            yield "prints"
            yield ""
            yield "```text"
            yield (SAMPLES / f"{name}.txt").read_text(encoding="utf-8").rstrip()
            yield "```"
            yield ""
        if language == "PowerShell":
            yield "The tests run the other two samples, but not this one."
            yield ""
        if language == "C++":
            yield "The [client kit](../packaging.md#building-a-client) contains `JobObjects.hpp`."
            yield ""


def class_page(entry, interface, links):
    name, members = entry["name"], interface["members"]
    links = {i: (f"`{n}`" if n == name else f"[{n}]({n}.md)") for i, n in links.items()}
    yield NOTE
    yield f"# {name}"
    yield ""
    for paragraph in entry["doc"].paragraphs + interface["doc"].paragraphs:
        yield escape(paragraph)
        yield ""
    yield "| | |"
    yield "|---|---|"
    yield f"| ProgID | `Corvane.{name}` |"
    yield f"| CLSID | `{{{entry['uuid']}}}` |"
    yield f"| Interface | `{interface['name']}` (dual) |"
    yield f"| IID | `{{{interface['uuid']}}}` |"
    yield f"| Since | library version {interface['doc'].tag('Since')} |"
    yield ""
    properties = [m for m in members if not m.is_method()]
    methods = [m for m in members if m.is_method()]
    yield "## Properties"
    yield ""
    yield from member_table(properties, links, "property")
    if methods:
        yield "## Methods"
        yield ""
        yield from member_table(methods, links, "method")
    yield "## Samples"
    yield ""
    yield from sample_lines(name)
    yield "## The members in detail"
    yield ""
    for member in sorted(members, key=lambda m: m.name.lower()):
        yield from member_lines(member, links)


def overview(library, classes):
    yield NOTE
    yield "# Object reference"
    yield ""
    yield f"Type library `{library['name']}`, `{{{library['uuid']}}}`, version 1.0."
    yield "Create a class by its ProgID, such as `CreateObject(\"Corvane.PrintJob\")`, or by its CLSID."
    yield ""
    yield "- [All members in alphabetical order](members.md)"
    yield "- [Enumerations](enumerations.md): what the numbers mean"
    yield "- [Errors](../errors.md), [glossary](../glossary.md), [XML forms](../xml-forms.md)"
    yield ""
    yield "## Objects"
    yield ""
    yield "| Class | Contents |"
    yield "|---|---|"
    for entry in classes:
        yield f"| [{entry['name']}]({entry['name']}.md) | {escape(first_sentence(entry['doc'].paragraphs[0]))} |"
    yield ""
    yield "Children, and the lines of the contents:"
    yield ""
    yield "![PrintJob holds JobContents, and when set a second JobContents as PageCounterJobContents, WindowsPrintInfo " \
        "and PolicyResults. CopyJob, ScanJob and FaxJob hold JobContents, and PolicyResults when set. JobCopyLines " \
        "returns a copy of the contents' lines as CopyLines, whose Item returns a copy of a line as CopyLine. " \
        "LogicalPrinter has no children.](objects.svg)"
    yield ""
    for paragraph in library["doc"].paragraphs:
        if paragraph.startswith("Rules that hold"):
            yield "## Rules for every member"
            yield ""
            continue
        if paragraph.startswith("Words for amounts") and paragraph.strip():
            yield ""
        yield escape(paragraph)
        if not paragraph.startswith("- "):
            yield ""
    yield "## Errors of every member"
    yield ""
    yield "| HRESULT | When | Description |"
    yield "|---|---|---|"
    yield "| `E_POINTER` 0x80004003 | an out-parameter is null; impossible with late binding | none |"
    yield "| `E_OUTOFMEMORY` 0x8007000E | out of memory | the system's text |"
    yield "| `E_FAIL` 0x80004005 | an internal failure; not from plain properties | its text |"
    yield ""
    yield "Other errors are listed with each member, and [all of them in one table](../errors.md)."
    yield ""
    yield "## The types"
    yield ""
    yield "| Automation | In the interface | VBScript | PowerShell, .NET | C++ |"
    yield "|---|---|---|---|---|"
    yield "| String | `BSTR` | String | `string` | `std::wstring` in `JobObjects.hpp`; else `BSTR`, freed by the caller |"
    yield "| Long | `LONG`, 32-bit signed | Long | `int` | `LONG` |"
    yield "| Boolean | `VARIANT_BOOL` | Boolean | `bool` | `bool` in `JobObjects.hpp`; else `VARIANT_TRUE` (-1), `VARIANT_FALSE` (0) |"
    yield "| Date | `DATE` | Date | `DateTime` | `double`: days since 30 December 1899 |"
    yield ""


def members_page(classes, interfaces):
    found = {}
    for entry in classes:
        for member in interfaces[entry["interface"]]["members"]:
            found.setdefault(member.name, []).append((entry["name"], member))
    yield NOTE
    yield "# All members"
    yield ""
    letter = ""
    for name in sorted(found, key=str.lower):
        if name[0].upper() != letter:
            letter = name[0].upper()
            yield f"## {letter}"
            yield ""
            yield "| Member | Class | Access |"
            yield "|---|---|---|"
        owners = sorted(found[name], key=lambda o: o[0])
        targets = ", ".join(f"[{owner}]({owner}.md#{anchor(name)})" for owner, _ in owners)
        kinds = ", ".join(sorted({m.access() for _, m in owners}))
        yield f"| `{name}` | {targets} | {kinds} |"
        following = [n for n in sorted(found, key=str.lower) if n.lower() > name.lower()]
        if not following or following[0][0].upper() != letter:
            yield ""


def enumerations_page(classes, interfaces):
    yield NOTE
    yield "# Enumerations"
    yield ""
    yield "The meaning of numeric property values. The type library has no enumeration types: scripts use the numbers"
    yield "or constants of their own; C++ clients include `windows.h` for the `WindowsPrintInfo` properties."
    yield ""
    for entry in classes:
        for member in interfaces[entry["interface"]]["members"]:
            if member.doc.values:
                yield f"## {member.name}"
                yield ""
                yield f"Of [{entry['name']}.{member.name}]({entry['name']}.md#{anchor(member.name)}). " + \
                    escape(member.doc.text())
                yield ""
                yield from value_table(member)
    yield "The paper codes of [DevModePaperSize](WindowsPrintInfo.md#devmodepapersize) are listed in"
    yield "[words and codes](vocabulary.md#paper-sizes)."
    yield ""


def pages(source):
    links = {c["interface"]: c["name"] for c in source.classes}
    yield "index.md", overview(source.library, source.classes)
    yield "members.md", members_page(source.classes, source.interfaces)
    yield "enumerations.md", enumerations_page(source.classes, source.interfaces)
    for entry in source.classes:
        yield entry["name"] + ".md", class_page(entry, source.interfaces[entry["interface"]], links)


def missing_samples(source):
    for entry in source.classes:
        for suffix in [s for _, s, _ in LANGUAGES] + ["txt"]:
            file = SAMPLES / f"{entry['name']}.{suffix}"
            if not file.exists() or not file.read_text(encoding="utf-8").strip():
                yield f"coclass {entry['name']} has no sample {file.name}"


def main():
    check = sys.argv[1:] == ["--check"]
    if sys.argv[1:] and not check:
        sys.exit(__doc__)
    source = idl.read()
    problems = source.problems + list(missing_samples(source))
    if problems:
        sys.exit("\n".join(f"{idl.IDL.name}: {p}" for p in problems))
    written = {name: "\n".join(lines).rstrip() + "\n" for name, lines in pages(source)}
    if not check:
        FOLDER.mkdir(exist_ok=True)
        for name, text in written.items():
            (FOLDER / name).write_text(text, encoding="utf-8")
    # generate_vocabulary.py writes the words and codes.
    there = {p.name: p.read_text(encoding="utf-8") for p in FOLDER.glob("*.md") if p.name != "vocabulary.md"}
    old = sorted(name for name in written.keys() | there.keys() if written.get(name) != there.get(name))
    if old:
        sys.exit(f"docs/reference: {', '.join(old)} out of date: run docs/generate_reference.py, and delete obsolete pages")


if __name__ == "__main__":
    main()
