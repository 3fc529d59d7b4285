#!/usr/bin/env bash
# Builds every package into release/: installer, registration-free files, client kit, symbols, bill of materials and
# checksums (docs/packaging.md).
# JOBS sets the number of parallel compilers, SOURCE_DATE_EPOCH the date of the files (default: the last commit's).
set -euo pipefail
cd "$(dirname "$0")"

if [ -n "$(git status --porcelain 2>/dev/null)" ]; then
    echo "package: uncommitted changes: nobody else can reproduce this package" >&2
fi
scripts/setup.sh
cmake --preset windows
# A changed SOURCE_DATE_EPOCH does not trigger a rebuild.
rm -rf build/windows/packaging/release build/windows/packaging/*.msi build/windows/packaging/*.spdx.json
cmake --build --preset windows --target release --parallel "${JOBS:-$(nproc)}"

rm -rf release
cp -r build/windows/packaging/release release
(cd release && sha256sum --check --strict SHA256SUMS)
echo
echo "Files in release/:"
ls -l release
