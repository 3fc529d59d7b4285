#!/usr/bin/env bash
# Runs the tests of this folder with 100,000 jobs, and exports a million records. Takes about four minutes and 1.5 GB of
# disk.
set -euo pipefail
cd "$(dirname "$0")/../.."

scripts/setup.sh
export PRESET=windows-64
source scripts/wine-session.sh
start_wine
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" --target jobobjects_tool Tarnwick
build=$PWD/build/$preset
"$wine" regsvr32 /s "$(windows_path "$build/JobObjects/Tarnwick.dll")"

run() {
    local test=$1
    shift
    echo "== $test"
    python3 -B "tests/database/${test}_test.py" "$build/tests/database/long_$test" "$@" \
        "$wine" "$build/tools/jobobjects.exe"
}
run database 100000 JobObjects/JobAttributes.xml
run report 100000
run long
