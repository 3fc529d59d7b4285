#!/usr/bin/env bash
# Builds everything and runs all tests: the platform-neutral ones natively and under Wine, the others under Wine only.
# JOBS sets the number of parallel compilers and tests.
set -euo pipefail
cd "$(dirname "$0")"
jobs=${JOBS:-$(nproc)}

scripts/setup.sh
source scripts/wine-session.sh
start_wine

for preset in native windows; do
    cmake --preset "$preset"
    cmake --build --preset "$preset" --parallel "$jobs"
    # The joint run below would not notice a build without tests.
    ctest --preset "$preset" --show-only | grep -Eq '^Total Tests: [1-9]' ||
        { echo "test: the $preset build has no tests" >&2; exit 1; }
done

# One run over both builds gives one summary.
mkdir -p build/tests
printf 'subdirs("%s")\n' "$PWD/build/native" "$PWD/build/windows" >build/tests/CTestTestfile.cmake
ctest --test-dir build/tests --parallel "$jobs" --output-on-failure --no-tests=error
