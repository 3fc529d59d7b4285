"""The date of everything in a package: SOURCE_DATE_EPOCH, else the date of the last commit.

Sources outside a repository of their own get a fixed date.
"""

import datetime
import os
import subprocess
from functools import cache
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
WITHOUT_REPOSITORY = 946684800 # 2000-01-01


def _git(*arguments):
    try:
        return subprocess.run(["git", "-C", str(ROOT), *arguments], capture_output=True, text=True,
                              check=True).stdout.strip()
    except (OSError, subprocess.CalledProcessError):
        return ""


@cache
def seconds():
    given = os.environ.get("SOURCE_DATE_EPOCH")
    if given:
        return int(given)
    top = _git("rev-parse", "--show-toplevel")
    date = _git("log", "-1", "--format=%ct") if top and Path(top).resolve() == ROOT else ""
    return int(date) if date else WITHOUT_REPOSITORY


def utc():
    return datetime.datetime.fromtimestamp(seconds(), datetime.timezone.utc)
