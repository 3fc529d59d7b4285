#!/usr/bin/env python3
"""Runs the recipes of docs/recipes.md: each script shown there is the file of samples/recipes, and its command gives
the output that follows.

    recipes_test.py [EMULATOR...]
"""
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
RECIPES = ROOT / "samples" / "recipes"
LANGUAGES = {".vbs": "vb", ".js": "js"}


def block(section, language):
    """The section's code block of this language; None without one."""
    blocks = re.findall(rf"^```{language}\n(.*?)^```$", section, re.M | re.S)
    if len(blocks) > 1:
        sys.exit(f"a section has {len(blocks)} blocks of {language}")
    return blocks[0] if blocks else None


def problems_of(name, section, emulator, samples):
    path = RECIPES / name
    if block(section, LANGUAGES[path.suffix]) != path.read_text(encoding="utf-8"):
        yield "the page does not show the file"
    folder = samples / "recipes"
    command = block(section, "bat").split()
    if name not in command:
        yield f"the command does not run it: {' '.join(command)}"
    run = subprocess.run([*emulator, *command], cwd=folder, capture_output=True, timeout=60, check=False)
    output = run.stdout.decode("ascii", "replace").replace("\r\n", "\n")
    if output != block(section, "text"):
        yield f"the output differs: {output}"
    table = block(section, "csv")
    if table and (folder / "jobs.csv").read_bytes().decode("utf-16").replace("\r\n", "\n") != table:
        yield "jobs.csv differs: " + (folder / "jobs.csv").read_bytes().decode("utf-16")


def main(*emulator):
    sections = re.split(r"^## ", (ROOT / "docs" / "recipes.md").read_text(encoding="utf-8"), flags=re.M)[1:]
    recipes = {match[1]: s for s in sections for match in [re.search(r"\]\(\.\./samples/recipes/([^)]+)\)", s)] if match}
    problems = [f"{path.name}: is not on the page" for path in RECIPES.iterdir() if path.name not in recipes]
    with tempfile.TemporaryDirectory() as work:
        samples = Path(shutil.copytree(ROOT / "samples", Path(work) / "samples"))
        for name, section in recipes.items():
            problems += [f"{name}: {p}" for p in problems_of(name, section, emulator, samples)]
    print("\n".join(problems) or f"{len(recipes)} recipes work")
    return 1 if problems or not recipes else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
