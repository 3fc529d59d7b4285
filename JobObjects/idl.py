"""Reads JobObjects.idl: classes, interfaces and members with their comments, and checks the comments.

Documentation, packaging and tests all read the interface definition through this module. The top of JobObjects.idl
describes the form of the comments.
"""

import re
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
IDL = Path(__file__).resolve().with_name("JobObjects.idl")
TAGS = ("Values", "Units", "Range", "Default", "Stored", "Since", "Errors")
STORED = re.compile(r"(no|every form|from [0-9.]+[0-9]( to below [0-9.]+[0-9])?)\b")


class Doc:
    """A comment block: paragraphs, parameters, tagged lines, enumeration values."""

    def __init__(self, lines):
        self.lines, self.paragraphs, self.params, self.values, self.tags = lines, [], {}, [], {}
        append = None
        for line in lines:
            tag = re.match(r"(%s): ?(.*)" % "|".join(TAGS), line)
            value = re.match(r"- (-?\d+|0x[0-9A-Fa-f]+) (\w+): (.*)", line)
            item = re.match(r"- (\w+): (.*)", line)
            if not line:
                append = None
            elif tag:
                append = self._start(self.tags, tag[1], tag[2])
            elif value:
                append = self._value(*value.groups())
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

    def _value(self, number, name, text):
        self.values.append([number, name, text])
        entry = self.values[-1]

        def append(more):
            entry[2] += " " + more

        return append

    def text(self):
        return " ".join(self.paragraphs)

    def comment(self, indent=""):
        """The block as it is in the interface definition."""
        return "".join(f"{indent}/// {line}".rstrip() + "\n" for line in self.lines)

    def tag(self, name):
        """The tagged line without its full stop; empty if the tag is missing."""
        text = self.tags.get(name, "")
        return text[:-1] if text.endswith(".") else text


class Member:
    def __init__(self, name, doc, since):
        self.name, self.doc = name, doc
        self.dispid, self.kinds, self.params = None, [], []
        self.since = doc.tag("Since") or since

    def access(self):
        return {"propget": "read", "propget propput": "read/write"}.get(" ".join(self.kinds), "method")

    def type(self):
        """The type of a property, or the result type of a method (None without a result)."""
        return next((t[:-1] for a, t, _ in self.params if "out" in a and ("retval" in a)), None)

    def is_method(self):
        return self.kinds == ["method"]

    def is_object(self):
        return not self.is_method() and self.type().endswith("*")


class Reader:
    """Reads the interface definition line by line; a statement may span lines."""

    def __init__(self, text):
        self.interfaces, self.classes, self.library, self.problems = {}, [], None, []
        self.comment, self.statement, self.current, self.attributes = [], "", None, ""
        for line in text.splitlines():
            self._line(line.strip())
        for interface in self.interfaces.values():
            for member in interface["members"]:
                self.problems += [f"{interface['name']}.{member.name} {p}" for p in problems_of(member)]

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
        if "uuid(" in text:
            self.attributes = text
        if text.endswith("{"):
            self._open(re.search(r"(interface|library|coclass) (\w+)", text))
        elif text == "};":
            self.current = None
        elif text.startswith("[default]"):
            self.classes[-1]["interface"] = re.search(r"interface (\w+);", text)[1]
        elif "HRESULT" in text:
            self._member(text)

    def _attribute(self, name):
        return re.search(r'\b%s\("?([^")]*)"?\)' % name, self.attributes)[1]

    def _open(self, match):
        kind, name = match.groups()
        doc = self._take_doc(f"{kind} {name}")
        item = {"name": name, "uuid": self._attribute("uuid"), "help": self._attribute("helpstring"), "doc": doc}
        if kind == "library":
            self.library = item | {"version": self._attribute("version"), "locale": int(self._attribute("lcid"), 16)}
        elif kind == "coclass":
            self.classes.append(item)
        else:
            if not doc.tag("Since"):
                self.problems.append(f"{name} has no line Since")
            self.current = item | {"members": []}
            self.interfaces[name] = self.current

    def _member(self, text):
        attributes, name, params = re.match(r"\[(.*?)\] HRESULT (\w+)\((.*)\);$", text).groups()
        kind = next((k for k in ("propget", "propput") if k in attributes), "method")
        members = self.current["members"]
        if kind == "propput" and members and members[-1].name == name:
            members[-1].kinds.append(kind)
            return
        member = Member(name, self._take_doc(f"{self.current['name']}.{name}"), self.current["doc"].tag("Since"))
        member.kinds.append(kind)
        member.dispid = int(re.search(r"id\((\d+)\)", attributes)[1])
        member.params = re.findall(r"\[([\w, ]+)\] (\w+\**) (\w+)", params)
        members.append(member)


def needed_tags(member):
    """The tagged lines that a member must have."""
    if member.is_method():
        return {"Errors"}
    needed = {"Default", "Stored"}
    if member.type() in ("LONG", "DATE"):
        needed |= {"Units", "Range"}
    if member.name == "Xml":
        needed |= {"Range", "Errors"}
    if member.is_object():
        needed |= {"Errors"}
    return needed


def problems_of(member):
    doc = member.doc
    if not doc.paragraphs:
        yield "has no text"
    for tag in sorted(needed_tags(member) - set(doc.tags)):
        yield f"has no line {tag}"
    for tag, text in doc.tags.items():
        if not text and tag != "Values":
            yield f"has an empty line {tag}"
    if ("Values" in doc.tags) != bool(doc.values):
        yield "has values without a line Values, or the line without values"
    if [t for t in TAGS if t in doc.tags] != list(doc.tags):
        yield f"has its lines in another order than {', '.join(TAGS)}"
    if "Stored" in doc.tags and not STORED.match(doc.tags["Stored"]):
        yield f"has a line Stored of unknown form: {doc.tags['Stored']}"
    given = [p[2] for p in member.params] if member.is_method() else []
    if list(doc.params) != given:
        yield f"does not describe its parameters {given}"


def read(path=IDL):
    return Reader(path.read_text(encoding="utf-8"))
