#!/usr/bin/env python3
"""Passes records from one script host to the next: 64 bits, 32 bits, VBScript and JScript in turn.

    exchange_test.py WINE FOLDER LIBRARY...

Registers the libraries of both bitnesses first. Every host must read what the one before wrote, write the same bytes,
and give the same codes and errors.
"""
import subprocess
import sys
from pathlib import Path

HERE = Path(__file__).resolve().parent
GOLDEN = HERE.parent / "data/golden"
HOSTS = [("system32", "vbs"), ("syswow64", "js"), ("system32", "js"), ("syswow64", "vbs"), ("system32", "vbs")]


def windows(path):
    return "Z:" + str(path).replace("/", "\\")


def run(wine, system, language, *files):
    script = subprocess.run(
        [wine, f"C:\\windows\\{system}\\cscript.exe", "//nologo", windows(HERE / f"exchange.{language}"),
         *map(windows, files)], capture_output=True, timeout=120, check=False)
    return script.stdout.decode("utf-8", "replace").strip()


def main(wine, folder, *libraries):
    for library in libraries:
        subprocess.run([wine, "regsvr32", "/s", windows(library)], check=True)
    folder = Path(folder).resolve()
    folder.mkdir(parents=True, exist_ok=True)
    records = [path.read_text(encoding="utf-8") for path in sorted(GOLDEN.glob("*.xml"))]
    assert len(records) > 30 and not any("\f" in record for record in records)
    source = folder / "golden.txt"
    source.write_bytes("\ufeff".encode("utf-16-le") + "\f".join(records).encode("utf-16-le"))
    first = None
    for number, (system, language) in enumerate(HOSTS, 1):
        written, codes = folder / f"{number}.txt", folder / f"{number}.codes.txt"
        written.unlink(missing_ok=True)
        said = run(wine, system, language, source, written, codes)
        if said != f"{len(records)} records":
            return f"{system} {language}: {said!r}, not {len(records)} records"
        results = written.read_bytes(), codes.read_bytes()
        first = first or results
        if results[0] != first[0]:
            return f"{system} {language} wrote other XML than {HOSTS[0]}: see {written}"
        if results[1] != first[1]:
            return f"{system} {language} gave other codes than {HOSTS[0]}: see {codes}"
        source = written
    print(f"{len(HOSTS)} hosts exchanged {len(records)} records")
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
