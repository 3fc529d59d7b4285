#!/usr/bin/env python3
"""Extracts the script of README.md and its expected output.

    readme_sample.py FOLDER      writes README.vbs and README.txt there
"""

import re
import sys
from pathlib import Path

text = (Path(__file__).resolve().parents[2] / "README.md").read_text(encoding="utf-8")
folder = Path(sys.argv[1])
for language, name in (("vb", "README.vbs"), ("text", "README.txt")):
    blocks = re.findall(rf"^```{language}\n(.*?)^```$", text, re.M | re.S)
    if len(blocks) != 1:
        sys.exit(f"README.md has {len(blocks)} blocks of {language}, not one")
    (folder / name).write_text(blocks[0], encoding="ascii", newline="\n")
