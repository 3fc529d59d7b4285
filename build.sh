#!/usr/bin/env bash
# Builds the library for 32-bit and 64-bit Windows and installs it, with its data files, into dist/ and dist/x64/.
# JOBS sets the number of parallel compilers.
set -euo pipefail
cd "$(dirname "$0")"

scripts/setup.sh
for preset in windows windows-64; do
    cmake --preset "$preset"
    cmake --build --preset "$preset" --target release_files --parallel "${JOBS:-$(nproc)}"
done

rm -rf dist
# Installs the stripped libraries; the debug information stays in the build folders.
cmake --install build/windows --prefix "$PWD/dist"
cmake --install build/windows-64 --prefix "$PWD/dist/x64"

files=(Tarnwick.dll JobObjects.tlb JobAttributes.xml JobObjects.idl include/JobObjects.h include/JobObjects.hpp
    x64/Tarnwick.dll x64/JobObjects.tlb x64/JobAttributes.xml)
for file in "${files[@]}"; do
    [ -s "dist/$file" ] || { echo "build: dist/$file is missing" >&2; exit 1; }
done
echo
echo "Files in dist/:"
(cd dist && ls -l "${files[@]}")
