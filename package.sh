#!/usr/bin/env bash
# Builds all that is delivered and leaves it in release/: the installer, the registration-free files, the client kit,
# the symbols, the bill of materials and the checksums (docs/packaging.md).
# JOBS sets the number of parallel compilers, SOURCE_DATE_EPOCH the date that the files bear, by default the last
# commit's.
set -euo pipefail
cd "$(dirname "$0")"

if [ -n "$(git status --porcelain 2>/dev/null)" ]; then
    echo "package: the tree has changes that are not committed: nobody else can make this package" >&2
fi
scripts/setup.sh
cmake --preset windows
# The build does not see that the date has changed.
rm -rf build/windows/packaging/release build/windows/packaging/*.msi build/windows/packaging/*.spdx.json
cmake --build --preset windows --target release --parallel "${JOBS:-$(nproc)}"

rm -rf release
cp -r build/windows/packaging/release release
(cd release && sha256sum --check --strict SHA256SUMS)
echo
echo "Left in release/:"
ls -l release
