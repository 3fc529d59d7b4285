#!/usr/bin/env bash
# Builds the benchmarks for Windows and runs them under Wine. Only their table goes to standard output. Options go to
# the program: --check fails on a missed goal, --benchmark_filter=REGEX selects rows.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh >&2
source scripts/wine-session.sh
start_wine
cmake --preset windows >/dev/null
cmake --build --preset windows --target bench >&2
"$wine" regsvr32 /s "$(windows_path "$PWD/build/windows/bench/shipped/Tarnwick.dll")"
"$wine" build/windows/bench/bench.exe "$@" </dev/null
