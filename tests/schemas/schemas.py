"""Chooses the schema for a record's XML and validates with xmllint. Shared by the schema tests."""
import re
import subprocess
from pathlib import Path

SCHEMAS = Path(__file__).resolve().parents[2] / "schemas"

# The start tag of the root, and its Version. The library writes attributes in double quotes.
_ROOT = re.compile(r'\s*<([A-Za-z]+)([^<>]*)>')
_VERSION = re.compile(r'\sVersion="([^"]*)"')


class NoSchema(Exception):
    """No schema for this XML."""


def _number(version):
    return tuple(int(component) for component in version.split("."))


def _forms(root):
    """The versioned schemas of a record as (lowest version, file), newest first."""
    names = (re.fullmatch(re.escape(root) + r"-(\d+\.\d+)\.xsd", path.name) for path in SCHEMAS.iterdir())
    return sorted(((_number(name[1]), SCHEMAS / name[0]) for name in names if name), reverse=True)


def schema_of(text):
    """The schema named after the root element; of several, the newest that is not above the XML's version."""
    tag = _ROOT.match(text)
    if not tag:
        raise NoSchema("no start tag")
    root = tag[1]
    if root == "CopyLine" and "<Pages>" in text:
        return SCHEMAS / "CopyLine-older.xsd"
    forms = _forms(root)
    if not forms:
        if not (SCHEMAS / f"{root}.xsd").is_file() or root[0].islower():
            raise NoSchema(f"no schema for {root}")
        return SCHEMAS / f"{root}.xsd"
    version = _VERSION.search(tag[2])
    if not version or not re.fullmatch(r"\d+(\.\d+){1,3}", version[1]):
        raise NoSchema(f"{root} without a version")
    for lowest, path in forms:
        if lowest <= _number(version[1]):
            return path
    raise NoSchema(f"no form of {root} for version {version[1]}")


def read(path):
    """Golden files and compiled tests use UTF-8; the script host writes UTF-16 with a byte-order mark."""
    data = Path(path).read_bytes()
    return data.decode("utf-16" if data[:2] in (b"\xff\xfe", b"\xfe\xff") else "utf-8")


def group_by_schema(paths):
    """Maps each schema to its files. Raises NoSchema with the name of a file without a schema."""
    groups = {}
    for path in paths:
        try:
            groups.setdefault(schema_of(read(path)), []).append(path)
        except (NoSchema, UnicodeDecodeError) as error:
            raise NoSchema(f"{path}: {error}") from error
    return groups


def failures(schema, paths):
    """Validates files against a schema and its rules. Maps each invalid file to xmllint's messages."""
    messages = {}
    names = [str(path) for path in paths]
    options = [["--schema", str(schema)]]
    if '"LogTarget"' in schema.read_text(encoding="utf-8"):
        options.append(["--schematron", str(SCHEMAS / "LogTarget.sch")])
    for start in range(0, len(names), 500):
        for option in options:
            messages |= _invalid(option, names[start:start + 500])
    return messages


def _invalid(option, names):
    run = subprocess.run(["xmllint", "--noout", "--nonet", *option, *names],
                         capture_output=True, encoding="utf-8", errors="replace", check=False)
    lines = run.stderr.splitlines()
    # Anything that xmllint does not report as valid is invalid.
    return {name: [line for line in lines if line.startswith(f"{name}:")] or lines[:5]
            for name in names if f"{name} validates" not in lines}
