#!/usr/bin/env bash
# Builds and runs every benchmark for Windows, under Wine.
set -euo pipefail
cd "$(dirname "$0")/.."

cmake/setup.sh
source cmake/wine-session.sh
start_wine
cmake --preset windows >/dev/null
cmake --build --preset windows --target bench
"$wine" regsvr32 /s "$(windows_path "$PWD/build/windows/JobObjects/Tarnwick.dll")"
for program in build/windows/bench/*_bench.exe; do
    "$wine" "$program" </dev/null
done
