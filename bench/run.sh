#!/usr/bin/env bash
# Builds the benchmarks for Windows and runs them under Wine. Only their table goes to standard output. Options go to
# the program: --check fails on a missed goal, --benchmark_filter=REGEX selects rows. PRESET=windows-64 measures in
# 64 bits.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh >&2
source scripts/wine-session.sh
start_wine
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" --target bench >&2
"$wine" regsvr32 /s "$(windows_path "$PWD/build/$preset/bench/shipped/Tarnwick.dll")"
"$wine" "build/$preset/bench/bench.exe" "$@" </dev/null
