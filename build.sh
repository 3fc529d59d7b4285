#!/usr/bin/env bash
# Builds the library for 32-bit Windows and leaves it, with all that belongs to it, in dist/.
# JOBS sets the number of parallel compilers.
set -euo pipefail
cd "$(dirname "$0")"

scripts/setup.sh
cmake --preset windows
cmake --build --preset windows --target release_files --parallel "${JOBS:-$(nproc)}"

rm -rf dist
# The library comes without its debug information, which stays in build/windows.
cmake --install build/windows --prefix "$PWD/dist"

files=(Tarnwick.dll JobObjects.tlb JobAttributes.xml JobObjects.idl include/JobObjects.h)
for file in "${files[@]}"; do
    [ -s "dist/$file" ] || { echo "build: dist/$file is missing" >&2; exit 1; }
done
echo
echo "Left in dist/:"
(cd dist && ls -l "${files[@]}")
