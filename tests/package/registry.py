"""Reads registry exports into dictionaries for comparison."""

import re

VALUE = re.compile(r'^(@|"(?:[^"\\]|\\.)*")=(.*)$', re.S)


def _unquote(text):
    return re.sub(r"\\(.)", r"\1", text[1:-1]) if text.startswith('"') else text


def parse(text):
    """Maps (key, value name), in lower case, to the data. A key itself is (key, None), its default value (key, "")."""
    tree = {}
    key = ""
    for entry in re.split(r"\n(?=\[|@=|\")", text.replace("\r", "").replace("\\\n", "")):
        entry = entry.strip()
        if entry.startswith("["):
            key = entry[1:-1].lower()
            tree[key, None] = ""
        elif match := VALUE.match(entry):
            name = "" if match[1] == "@" else _unquote(match[1]).lower()
            tree[key, name] = _unquote(match[2])
    return tree


def read(path):
    return parse(path.read_text(encoding="utf-16"))


def added(after, before):
    """Entries of `after` that `before` lacks or has with another value."""
    return {entry: data for entry, data in after.items() if before.get(entry) != data}


def below(tree, key):
    """The entries below a key, relative to it."""
    prefix = key.lower() + "\\"
    return {(name[len(prefix):], value): data for (name, value), data in tree.items() if name.startswith(prefix)}
