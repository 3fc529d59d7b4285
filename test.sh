#!/usr/bin/env bash
# Builds everything and runs all tests: the platform-neutral ones natively and under 32-bit and 64-bit Wine, the others
# under Wine only.
# JOBS sets the number of parallel compilers and tests.
set -euo pipefail
cd "$(dirname "$0")"
jobs=${JOBS:-$(nproc)}

scripts/setup.sh
source scripts/wine-session.sh
start_wine "$wine32" "$wine64"

for preset in native windows windows-64; do
    cmake --preset "$preset"
    cmake --build --preset "$preset" --parallel "$jobs"
    # The joint run below would not notice a build without tests.
    ctest --preset "$preset" --show-only | grep -Eq '^Total Tests: [1-9]' ||
        { echo "test: the $preset build has no tests" >&2; exit 1; }
done

run_tests() {
    ctest --test-dir "$1" --parallel "$jobs" --output-on-failure --no-tests=error --output-log "$1/tests.log" ||
        failed+=("$1/tests.log")
}

# Apart from the others, because ctest applies properties to all tests of the same name.
failed=()
run_tests build/windows-64
# One run over both builds gives one summary.
mkdir -p build/tests
printf 'subdirs("%s")\n' "$PWD/build/native" "$PWD/build/windows" >build/tests/CTestTestfile.cmake
run_tests build/tests
[ ${#failed[@]} = 0 ] && exit
# Again at the end, where the reader of a long output looks first: the failures of the first run are far above.
for log in "${failed[@]}"; do
    echo "test: $log"
    grep -A 60 -E '\*\*\*' "$log" | cut -c 1-200 | head -n 80 || true
    sed -n '/tests passed,/,$p' "$log"
done >&2
exit 1
