#!/usr/bin/env bash
# Builds and runs the benchmarks for Windows under Wine and prints their table. Options go to the program:
# --check fails on a missed goal, --benchmark_filter=REGEX selects rows.
set -euo pipefail
cd "$(dirname "$0")/.."

cmake/setup.sh
source cmake/wine-session.sh
start_wine
cmake --preset windows >/dev/null
cmake --build --preset windows --target bench
"$wine" regsvr32 /s "$(windows_path "$PWD/build/windows/JobObjects/Tarnwick.dll")"
"$wine" build/windows/bench/bench.exe "$@" </dev/null
