#!/bin/sh
# Builds and runs every benchmark for Windows, under Wine. Usage: bench/run.sh [build folder]
set -eu
here=$(cd "$(dirname "$0")" && pwd)
build=${1:-$here/../build/windows}
cmake -S "$here/.." --preset windows -B "$build" > /dev/null
cmake --build "$build" --parallel 2 --target bench
for program in "$build"/bench/*_bench.exe; do
    "$here/../cmake/wine.sh" "$program"
done
