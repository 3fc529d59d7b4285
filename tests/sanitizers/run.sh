#!/usr/bin/env bash
# Runs the tests under all sanitizers: the platform-neutral code with the address and undefined behaviour sanitizers
# in 64 and 32 bits and with the thread sanitizer, and the whole Windows build with traps for undefined behaviour and
# misused library calls. Prints a row per preset and fails if a test fails.
# Usage: tests/sanitizers/run.sh [preset...]; JOBS sets the number of parallel compilers and tests.
set -euo pipefail
cd "$(dirname "$0")/../.."
jobs=${JOBS:-$(nproc)}
presets=("$@")
[ ${#presets[@]} -gt 0 ] || presets=(native native-32 native-thread windows-checked)

source scripts/wine-session.sh
start_wine

logs=$PWD/build/sanitizers
mkdir -p "$logs"
failed=0
printf '%-16s %7s %7s %8s\n' preset tests passed seconds
for preset in "${presets[@]}"; do
    log=$logs/$preset.log
    cmake --preset "$preset" >"$log"
    cmake --build --preset "$preset" --parallel "$jobs" >>"$log" 2>&1 || { tail -20 "$log" >&2; exit 1; }
    start=$SECONDS
    status=0
    ctest --preset "$preset" --parallel "$jobs" --no-tests=error >"$log" 2>&1 || status=$?
    summary=$(sed -n 's/.* \([0-9]*\) tests failed out of \([0-9]*\)$/\1 \2/p' "$log")
    read -r broken total <<<"${summary:-0 0}"
    printf '%-16s %7s %7s %8s\n' "$preset" "$total" $((total - broken)) $((SECONDS - start))
    if [ "$status" != 0 ] || [ "$total" = 0 ]; then
        failed=1
        sed -n '/The following tests FAILED/,$p' "$log" >&2
    fi
done
exit "$failed"
