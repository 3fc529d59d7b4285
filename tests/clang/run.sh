#!/usr/bin/env bash
# Compiles the library with Clang for 32-bit and 64-bit Windows and runs the unit and COM tests with it.
# JOBS sets the number of parallel compilers and tests.
set -euo pipefail
cd "$(dirname "$0")/../.."
jobs=${JOBS:-$(nproc)}
source scripts/wine-session.sh
start_wine "$wine32" "$wine64"

failed=
run_preset() {
    local build=$PWD/build/$1 wine=$2 tests
    cmake --preset "$1"
    cmake --build --preset "$1" --target tests/unit/all --target tests/com/all --parallel "$jobs"
    "$wine" regsvr32 /s "$(windows_path "$build/JobObjects/Tarnwick.dll")"
    for tests in unit com; do
        ctest --test-dir "$build/tests/$tests" --parallel "$jobs" --output-on-failure --no-tests=error || failed=yes
    done
}
run_preset windows-clang "$wine32"
run_preset windows-64-clang "$wine64"
[ -z "$failed" ] || { echo "clang: some tests failed" >&2; exit 1; }
