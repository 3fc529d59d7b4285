#!/usr/bin/env bash
# Parts the library from its debug information, so that it can be delivered without:
#
#   split_symbols.sh <objcopy> <source folder> <library> <output folder>
#
# Leaves in the output folder the library, which names its symbol file, <library>.debug, and the linker's map.
set -euo pipefail
objcopy=$1
sources=$2
library=$3
output=$4
name=$(basename "$library")

"$objcopy" --preserve-dates --only-keep-debug "$library" "$output/$name.debug"
# The link holds the symbol file's checksum. Without --preserve-dates the library would bear the current time.
"$objcopy" --preserve-dates --strip-all --add-gnu-debuglink="$output/$name.debug" "$library" "$output/$name"
# The linker names its own inputs by their full paths.
sed "s|$sources/||g" "$library.map" >"$output/$name.map"
touch "$output/$name" "$output/$name.debug"
