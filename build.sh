#!/usr/bin/env bash
# Builds the library for 32-bit Windows and installs it, with its data files, into dist/.
# JOBS sets the number of parallel compilers.
set -euo pipefail
cd "$(dirname "$0")"

scripts/setup.sh
cmake --preset windows
cmake --build --preset windows --target release_files --parallel "${JOBS:-$(nproc)}"

rm -rf dist
# Installs the stripped library; the debug information stays in build/windows.
cmake --install build/windows --prefix "$PWD/dist"

files=(Tarnwick.dll JobObjects.tlb JobAttributes.xml JobObjects.idl include/JobObjects.h)
for file in "${files[@]}"; do
    [ -s "dist/$file" ] || { echo "build: dist/$file is missing" >&2; exit 1; }
done
echo
echo "Files in dist/:"
(cd dist && ls -l "${files[@]}")
