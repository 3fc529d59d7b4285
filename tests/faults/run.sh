#!/usr/bin/env bash
# Makes each call of the library fail, alone and together with all later calls, and prints the number of faults.
# Uses the library and tests in build/windows, or the build of PRESET, which ./test.sh builds. Takes a few minutes.
set -euo pipefail
cd "$(dirname "$0")/../.."
source scripts/wine-session.sh
start_wine
"$wine" regsvr32 /s "$(windows_path "$PWD/build/$preset/JobObjects/Tarnwick.dll")"

export FAULTS=all
report=$(mktemp)
trap 'stop_wine; rm -f "$report"' EXIT
for tests in fault_tests log_fault_tests; do
    timeout 3600 cmake "-DCOMMAND=$wine;build/$preset/tests/faults/$tests.exe" -P tests/RunToEnd.cmake | tee -a "$report"
done
awk '/^faults, / { sub(/\r$/, ""); total += $NF } END { print "faults in total: " total }' "$report"
