#!/usr/bin/env python3
"""Runs the commands of a transcript and compares their output and exit codes with it.

    run_transcript.py TRANSCRIPT [--write] PROGRAM...

A command is a line "$ jobobjects ARGUMENT... [< FILE]". Its output follows, with "! " before lines of the error output,
then "exit CODE". In an expected line " * " matches any text, such as a system message. Commands run in the transcript's
folder, with FILE as standard input. The output must contain no control character. --write updates the transcript.
"""
import os
import re
import shlex
import subprocess
import sys
import unicodedata
from pathlib import Path


def decoded(output):
    text = output.decode("utf-8").replace("\r\n", "\n")
    control = [character for character in text if unicodedata.category(character) == "Cc" and character != "\n"]
    if control:
        sys.exit(f"control characters in the output: {control}")
    return text.splitlines()


def run(line, program, folder):
    arguments, _, source = line.removeprefix("$ jobobjects").partition(" < ")
    with open(folder / source if source else os.devnull, "rb") as standard_input:
        done = subprocess.run([*program, *shlex.split(arguments)], cwd=folder, stdin=standard_input,
                              capture_output=True, timeout=60, check=False)
    errors = decoded(done.stderr)
    return [line, *decoded(done.stdout), *(f"! {error}" for error in errors), f"exit {done.returncode}"]


def matches(actual, expected):
    return re.fullmatch(re.escape(expected).replace(r"\ \*\ ", " .* "), actual) is not None


def same(actual, expected):
    return len(actual) == len(expected) and all(map(matches, actual, expected))


def main(path, *program):
    transcript = Path(path)
    expected = transcript.read_text(encoding="utf-8").splitlines()
    commands = [line for line in expected if line.startswith("$ jobobjects")]
    if not commands:
        return f"{path} contains no command"
    write = program[0] == "--write"
    actual = [line for command in commands for line in run(command, program[write:], transcript.resolve().parent)]
    if write:
        transcript.write_text("\n".join(actual) + "\n", encoding="utf-8")
    elif not same(actual, expected):
        transcript = Path(transcript.name).with_suffix(".actual")
        transcript.write_text("\n".join(actual) + "\n", encoding="utf-8")
        subprocess.run(["diff", "-u", path, transcript], check=False)
        return f"{path}: the output differs"
    print(f"{len(commands)} commands match {Path(path).name}")
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
