#!/usr/bin/env python3
"""Writes the documentation of the elements in schemas/*.xsd, from the comments of JobObjects/JobObjects.idl.

    generate_schema_comments.py           write the comments
    generate_schema_comments.py --check   write nothing; fail if an element has no comment or a schema is out of date
"""

import re
import sys
import textwrap
from pathlib import Path
from xml.sax.saxutils import escape

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "JobObjects"))
import idl  # noqa: E402

SCHEMAS = idl.ROOT / "schemas"
WIDTH = 120

# Schemas that are not named after a class: the class with their elements.
CLASSES = {"DriverInfo": "LogicalPrinter", "JobCopyLines": "CopyLines", "PageCounterInfo": "PrintJob"}

# Elements that are not named after their property.
RENAMED = {"Coverage": "TonerCoverage", "DevModeTtOption": "DevModeTTOption", "DriverInfo": "DriverInfoXml",
           "LogTarget": "LogTargetType", "PageCounterInfo": "PageCounterInfoXml", "Saving": "TonerSaving"}

# Elements without a property: groups of others, the older copy line, and older parts of the logical printer.
WITHOUT_PROPERTY = {"Toner", "Rule", "Pages", "PageAttributes", "PortConfig", "ServerShareName",
                    "PortIpAddress", "PortHostName", "PortQueueName", "ServerIpAddress"} | {
    f"{part}{value}" for part in ("PrintProcessor", "PrintProvider")
    for value in ("Name", "FileName", "FileDescription", "CompanyName", "FileVersion")} - {"PrintProcessorName"}

ANNOTATION = re.compile(r"\n *<xs:annotation>.*?</xs:annotation>", re.S)
EMPTY = re.compile(r"(<xs:element [^>]*[^/])>\s*</xs:element>")
ELEMENT = re.compile(r'^( *)<xs:element name="(\w+)"([^>]*?)(/?)>$', re.M)


def member_text(member):
    doc = member.doc
    units = doc.tag("Units")
    parts = [*doc.paragraphs, *(f"{number} {name}: {text}" for number, name, text in doc.values)]
    if units and units not in ("code", "none fixed"):
        parts.append(f"Units: {units}.")
    return " ".join(parts)


class Comments:
    def __init__(self, source):
        self.classes = {c["name"]: c for c in source.classes}
        self.interfaces = source.interfaces
        self.problems, self.without = [], set()

    def text(self, schema, element):
        """The comment of an element; None without one."""
        name = schema.partition("-")[0]
        entry = self.classes[CLASSES.get(name, name)]
        if element in (name, entry["name"]) and element not in RENAMED:
            return entry["doc"].paragraphs[0]
        for member in self.interfaces[entry["interface"]]["members"]:
            if member.name == RENAMED.get(element, element):
                return member_text(member)
        if element not in WITHOUT_PROPERTY:
            self.problems.append(f"{schema}.xsd: {element} is not a property of {entry['name']}")
        self.without.add(element)
        return None

    def annotated(self, schema, page):
        def element(match):
            indent, name, attributes, empty = match.groups()
            text = self.text(schema, name)
            if not text:
                return match[0]
            inner = indent + "  "
            lines = textwrap.wrap(f"<xs:documentation>{escape(text)}</xs:documentation>", WIDTH,
                                  initial_indent=inner + "  ", subsequent_indent=inner + "    ",
                                  break_long_words=False, break_on_hyphens=False)
            start = f'{indent}<xs:element name="{name}"{attributes}>'
            return "\n".join([start, f"{inner}<xs:annotation>", *lines, f"{inner}</xs:annotation>"] +
                             ([f"{indent}</xs:element>"] if empty else []))

        return ELEMENT.sub(element, EMPTY.sub(r"\1/>", ANNOTATION.sub("", page)))


def main():
    check = sys.argv[1:] == ["--check"]
    if sys.argv[1:] and not check:
        sys.exit(__doc__)
    comments, old = Comments(idl.read()), []
    for path in sorted(SCHEMAS.glob("*.xsd")):
        page = path.read_text(encoding="utf-8")
        new = comments.annotated(path.stem, page) if path.name != "types.xsd" else page
        if new != page:
            old.append(path.name)
            if not check:
                path.write_text(new, encoding="utf-8")
    problems = comments.problems + [f"{n}: is not in a schema" for n in sorted(WITHOUT_PROPERTY - comments.without)]
    if problems:
        sys.exit("\n".join(problems))
    if check and old:
        sys.exit(f"{', '.join(old)} out of date: run docs/generate_schema_comments.py")


if __name__ == "__main__":
    main()
