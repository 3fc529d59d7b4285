#!/usr/bin/env python3
"""Mutation test of the schemas: changes the longest golden file of each schema in every way below, one place at a time.
Fails unless the schema refuses every mutant.

    mutations.py FOLDER_OF_GOLDEN_FILES
"""
import copy
import re
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
from collections import Counter
from pathlib import Path

import schemas

# Elements with the host's own markup.
MARKUP = {"PortConfig", "PrinterInfo", "Destination"}
# Optional elements.
OPTIONAL = MARKUP | {"Toner", "WindowsPrintInfo", "PolicyResults", "Cancelled", "RuleViolations", "CopyLine", "Rule"}
# Child records with golden files of their own.
RECORDS = {"JobContents", "PolicyResults"}
# Values that are never written.
DATES = ("2024-02-30T00:00:00", "2023-02-29T00:00:00", "1900-02-29T00:00:00", "2024-04-31T00:00:00", "2024-13-01T00:00:00",
         "2024-01-00T00:00:00", "2024-01-01T24:00:00", "0000-01-01T00:00:00", "0099-12-31T00:00:00",
         "2024-01-01T00:00:00Z", "2024-01-01T00:00:00.12")
WRONG_VALUES = {"Coverage": ("-1", "-2"), "Saving": ("-2",)} | dict.fromkeys(
    ("JobTimeLocal", "JobTimeUtc", "FirstTransactionDate", "LastTransactionDate"), DATES)
WRONG_LOG_TARGETS = (("None", "x"), ("None", " "), ("Device", ""), ("Device", "x"), ("Device", "0x10"), ("Device", "1.5"),
                     ("Device", "+5"), ("Device", "010"), ("Device", "2147483648"), ("Device", "-2147483649"))
# Content of elements with a type other than text.
TYPED = re.compile(r"-?\d+|true|false|\d{4}-\d\d-\d\dT[\d:.]+")


def local_name(element):
    return element.tag.rpartition("}")[2]


def elements(root):
    """All elements outside the host's markup and child records, with their paths of positions from the root."""
    pending = [((), root)]
    while pending:
        path, element = pending.pop()
        yield path, element
        if local_name(element) not in MARKUP and (not path or local_name(element) not in RECORDS):
            pending += [(path + (i,), child) for i, child in enumerate(element)]


def at(root, path):
    for position in path:
        root = root[position]
    return root


def mutants_of(root):
    """Yields (kind, place, mutant)."""
    def change(kind, path, action):
        result = copy.deepcopy(root)
        action(at(result, path))
        return kind, "/".join([local_name(root), *map(str, path)]), result

    for path, element in elements(root):
        name = local_name(element)
        yield change("renamed element", path, lambda e: setattr(e, "tag", e.tag + "X"))
        yield change("foreign namespace", path, lambda e: setattr(e, "tag", "{urn:other}" + local_name(e)))
        if name in MARKUP or path and name in RECORDS:
            continue
        yield change("unknown attribute", path, lambda e: e.set("Unknown", "1"))
        yield change("unknown element in front", path, lambda e: e.insert(0, ElementTree.Element("Unknown")))
        yield change("unknown element at the end", path, lambda e: e.append(ElementTree.Element("Unknown")))
        for attribute in element.attrib:
            if attribute not in ("HasRules",):
                yield change("missing attribute", path, lambda e, a=attribute: e.attrib.pop(a))
            if attribute not in ("Action",):
                yield change("wrong attribute value", path, lambda e, a=attribute: e.set(a, "x"))
        if len(element):
            yield change("text between elements", path, lambda e: setattr(e, "text", "stray"))
        elif name != "LogTarget" and TYPED.fullmatch(element.text or ""):
            for wrong in ("x", "TRUE", "99999999999"):
                yield change("wrong type", path, lambda e, w=wrong: setattr(e, "text", w))
        for wrong in WRONG_VALUES.get(name, ()):
            yield change("value that is never written", path, lambda e, w=wrong: setattr(e, "text", w))
        for kind, value in WRONG_LOG_TARGETS if name == "LogTarget" else ():
            yield change("log target that is never written", path, lambda e, k=kind, v=value: set_target(e, k, v))
        for i, child in enumerate(element):
            if local_name(child) not in OPTIONAL and (name, local_name(child)) != ("PageCounterInfo", "JobContents"):
                yield change("missing element", path, lambda e, i=i: e.remove(e[i]))
            if local_name(child) not in ("CopyLine", "Rule"):
                yield change("doubled element", path, lambda e, i=i: e.insert(i, copy.deepcopy(e[i])))
            if i > 0 and element[i - 1].tag != child.tag:
                yield change("wrong order", path, lambda e, i=i: e.insert(i - 1, take(e, i)))
    if "Version" in root.attrib and local_name(root) not in ("JobContents", "PolicyResults"):
        for version in other_forms(root):
            yield change("version of another form", (), lambda e, v=version: e.set("Version", v))


def set_target(element, kind, value):
    element.set("Type", kind)
    element.text = value


def take(element, position):
    child = element[position]
    element.remove(child)
    return child


def other_forms(root):
    """Versions that another schema covers: the lowest of each; and malformed versions."""
    own = schemas.schema_of(f'<{local_name(root)} Version="{root.get("Version")}">')
    others = [path.stem.partition("-")[2] for path in schemas.SCHEMAS.glob(f"{local_name(root)}-*.xsd")
              if path != own and path.stem[-1].isdigit()]
    return others + ["7", "1.2.3.4.5", "4.x", ""]


def main(folder):
    counts, accepted = Counter(), []
    golden = sorted(Path(folder).glob("*.xml"))
    if not golden:
        return f"{folder} contains no XML file"
    with tempfile.TemporaryDirectory() as work:
        for schema, files in schemas.group_by_schema(golden).items():
            mutants = {}
            file = max(files, key=lambda path: path.stat().st_size)
            for kind, place, tree in mutants_of(ElementTree.fromstring(schemas.read(file))):
                path = Path(work) / f"{schema.stem}-{len(mutants)}.xml"
                path.write_bytes(ElementTree.tostring(tree))
                mutants[str(path)] = f"{kind} in {file.name} at {place}"
                counts[kind] += 1
            refused = schemas.failures(schema, mutants)
            accepted += [what for path, what in mutants.items() if path not in refused]
    for kind, count in sorted(counts.items()):
        print(f"{kind}: {count}")
    if accepted:
        return "valid mutants:\n" + "\n".join(accepted)
    print(f"{counts.total()} mutants are refused")
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
