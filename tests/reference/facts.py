#!/usr/bin/env python3
"""Writes a VBScript test that checks the library against its object reference.

    facts.py FILE

The lines Default, Range and Stored of each property in the interface definition become checks: the value in a new
object, the limits of the range and the value below it, and whether the XML of each version contains the value.
"""

import re
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "JobObjects"))
import idl  # noqa: E402

# XML that gives a new object a version.
FORMS = {
    "PrintJob": '<PrintJob Version=""{0}""/>',
    "CopyJob": '<CopyJob Version=""{0}""><JobContents><JobCopyLines/></JobContents></CopyJob>',
    "ScanJob": '<ScanJob Version=""{0}""><JobContents><JobCopyLines/></JobContents></ScanJob>',
    "FaxJob": '<FaxJob Version=""{0}""><JobContents><JobCopyLines/></JobContents></FaxJob>',
    "LogicalPrinter": '<LogicalPrinter Version=""{0}""/>',
}
OLDEST = {"PrintJob": "3.5", "CopyJob": "3.9", "ScanJob": "3.9", "FaxJob": "4.2", "LogicalPrinter": "3.5"}

# Calls that set values without a property.
PREPARATION = {"PolicyResults": "o.AddRuleViolation 1, \"Inform\""}

# Not assigned: each view of the log target replaces the others, and DeviceId raises the version.
NOT_PUT = {("PrintJob", "DeviceId"), ("PrintJob", "DeviceAddress"), ("PrintJob", "TonerSaving")}

# Checks for the defaults that are described in words.
WORDS = {
    "empty": 'CheckEqual o.{m}, ""',
    "true": "CheckEqual o.{m}, True",
    "false": "CheckEqual o.{m}, False",
    "the zero date, 30 December 1899": "CheckEqual CDbl(o.{m}), CDbl(0)",
    "the time of creation": "CheckRecent o.{m}",
    "the element with the defaults of all values": 'CheckContains o.{m}, "<{c}"',
    "the element with two empty texts": 'CheckContains o.{m}, "<PageCounterInfo><"',
    "the element with six empty texts": 'CheckContains o.{m}, "<DriverInfo><DriverName/>"',
    "<JobCopyLines></JobCopyLines>": 'CheckEqual o.{m}, "<JobCopyLines></JobCopyLines>"',
    "a new, empty JobContents": "CheckLong o.{m}.TotalPages, 0",
    "an empty CopyLines object": "CheckLong o.{m}.Count, 0",
    "the code of the default language, with a warning in the log": "CheckLong o.{m}, DefaultLanguage()",
}


def default_check(name, member):
    text = member.doc.tag("Default")
    if re.fullmatch(r"-?\d+", text):
        return f"CheckLong o.{member.name}, {text}"
    if re.fullmatch(r"\d+\.\d+", text):
        return f'CheckEqual o.{member.name}, "{text}"'
    if text == "none" and member.is_object():
        return f"Check o.{member.name} Is Nothing, \"holds an object\""
    if text.startswith("none; reading it fails"):
        return f'CheckReadFails o, "{member.name}"'
    if text not in WORDS:
        sys.exit(f"facts: {name}.{member.name}: unknown form of default: '{text}'")
    return WORDS[text].format(m=member.name, c="JobCopyLines" if name == "CopyLines" else name)


def range_checks(member):
    match = re.match(r"(-?\d+) to (-?\d+)(; a smaller number is stored as (-?\d+))?", member.doc.tag("Range"))
    if not match or member.access() != "read/write" or member.type() != "LONG":
        return
    low, high, _, instead = match.groups()
    for given, kept in ((low, low), (high, high), (str(int(low) - 1), instead)):
        if kept is not None:
            yield f"CheckStores o, \"{member.name}\", {number(given)}, {number(kept)}"


def number(text):
    return "CLng(-2147483647 - 1)" if text == "-2147483648" else f"CLng({text})"


def value_to_put(member):
    """An assignment of a value other than the default."""
    kind = member.type()
    if kind == "BSTR":
        return f'o.{member.name} = "<{member.name}>7</{member.name}>"'
    if kind == "VARIANT_BOOL":
        return f"o.{member.name} = Not o.{member.name}"
    if kind == "DATE":
        return f"o.{member.name} = CDate(40000)"
    if kind == "LONG":
        return f"o.{member.name} = 7"
    return f'o.{member.name} = CreateObject("Corvane.{kind[1:-1]}")'


def as_version(text):
    return tuple(int(part) for part in text.split("."))


def place_of(member, version):
    """The element "Name" or attribute "@Name" with the value in this version's XML; empty if the version lacks it, None
    if the value has no element of its own."""
    stored = member.doc.tag("Stored")
    base = re.match(r"(no|every form|from ([0-9.]+[0-9])( to below ([0-9.]+[0-9]))?)", stored)
    if base[1] == "no" or stored.startswith("every form, in "):
        return None
    if version and base[2] and as_version(version) < as_version(base[2]):
        return ""
    if version and base[4] and as_version(version) >= as_version(base[4]):
        return ""
    two = re.search(r"as (\w+) below ([0-9.]+[0-9]) and as (\w+) from", stored)
    if two:
        return two[1] if as_version(version) < as_version(two[2]) else two[3]
    return usual_place(member)


def usual_place(member):
    attribute = re.search(r"as the attribute (\w+)", member.doc.tag("Stored"))
    element = re.search(r"as (?!the )(\w+)", member.doc.tag("Stored"))
    return "@" + attribute[1] if attribute else element[1] if element else member.name


def stored_checks(name, members, version):
    form = version and FORMS[name].format(version)
    yield f"Set o = CreateObject(\"Corvane.{name}\")"
    if form:
        yield f'o.Xml = "{form}"'
    if name in PREPARATION:
        yield PREPARATION[name]
    for member in members:
        writable = member.access() == "read/write" and member.name != "Xml" and (name, member.name) not in NOT_PUT
        if writable and member.doc.tag("Stored") != "no":
            yield value_to_put(member)
    yield "text = o.Xml"
    if form:
        yield f'CheckEqual o.Version, "{version}"'
    for member in members:
        if member.is_method() or member.name == "Xml":
            continue
        place = place_of(member, version)
        if place:
            yield f'CheckCarries text, "{place}", True, "{member.name}"'
        elif place == "" or member.doc.tag("Stored") == "no":
            yield f'CheckCarries text, "{usual_place(member)}", False, "{member.name}"'


def versions_of(name, members):
    if name not in FORMS:
        return [None]
    versions = {OLDEST[name], next(m.doc.tag("Default") for m in members if m.name == "Version")}
    for member in members:
        versions |= {v for v in re.findall(r"(?:from|below) ([0-9]+\.[0-9]+)", member.doc.tag("Stored"))}
    return sorted((v for v in versions if as_version(v) >= as_version(OLDEST[name])), key=as_version)


def class_test(name, members):
    # Reading Xml can set missing times, so it comes last.
    properties = sorted((m for m in members if not m.is_method()), key=lambda m: m.name == "Xml")
    yield f"Sub {name}_matches_the_reference()"
    yield "    Dim o, text"
    yield f'    Test "{name}: Default"'
    yield f'    Set o = CreateObject("Corvane.{name}")'
    for member in properties:
        yield f'    Test "{name}.{member.name}: Default"'
        yield "    " + default_check(name, member)
    for member in properties:
        for line in range_checks(member):
            yield f'    Test "{name}.{member.name}: Range"'
            yield "    " + line
    for version in versions_of(name, properties):
        yield f'    Test "{name} {version or ""}: Stored"'
        for line in stored_checks(name, properties, version):
            yield "    " + line
    yield "End Sub"
    yield ""


HELPERS = '''
Sub CheckRecent(moment)
    Check Abs(CDbl(moment) - CDbl(Now)) < 1, "not the time of creation: " & CDbl(moment)
End Sub

Sub CheckReadFails(o, name)
    Dim value
    On Error Resume Next
    Select Case name
        Case "LogicalPrinterGuid" value = o.LogicalPrinterGuid
        Case "DeviceId" value = o.DeviceId
        Case "DeviceAddress" value = o.DeviceAddress
    End Select
    Check Err.Number = &H800710DD, "error 0x" & Hex(Err.Number)
    Err.Clear
End Sub

Sub CheckCarries(text, place, expected, name)
    Dim carries
    If Left(place, 1) = "@" Then
        carries = InStr(text, " " & Mid(place, 2) & "=""") > 0
    Else
        carries = InStr(text, "<" & place & ">") + InStr(text, "<" & place & "/>") + InStr(text, "<" & place & " ") > 0
    End If
    Check carries = expected, name & ": " & place & " in the text: " & carries & ", expected: " & expected & ": " & text
End Sub

Function DefaultLanguage()
    Dim contents
    Set contents = CreateObject("Corvane.JobContents")
    contents.GenerateContentsFromPageCounterInfo "", 1, 1, 1, 1
    DefaultLanguage = contents.DBPdl
End Function
'''


def stores_helper(source):
    """A sub that puts and gets a property by name, because VBScript has no other way in every host."""
    yield "Sub CheckStores(o, name, given, kept)"
    yield "    Dim value"
    yield "    Select Case name"
    names = sorted({m.name for i in source.interfaces.values() for m in i["members"] if list(range_checks(m))})
    for name in names:
        yield f'        Case "{name}" o.{name} = given: value = o.{name}'
    yield "    End Select"
    yield "    CheckEqual value, kept"
    yield "End Sub"


def main():
    source = idl.read()
    if source.problems:
        sys.exit("\n".join(source.problems))
    lines = ["Sub RunTests()"]
    lines += [f"    {c['name']}_matches_the_reference" for c in source.classes]
    lines += ["End Sub", ""]
    for entry in source.classes:
        lines += class_test(entry["name"], source.interfaces[entry["interface"]]["members"])
    lines += stores_helper(source)
    text = "\n".join(lines) + "\n" + HELPERS
    Path(sys.argv[1]).write_text(text, encoding="ascii", newline="\n")


if __name__ == "__main__":
    main()
