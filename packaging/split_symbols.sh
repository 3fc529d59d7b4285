#!/usr/bin/env bash
# Splits the debug information from the library:
#
#   split_symbols.sh <objcopy> <source folder> <library> <output folder>
#
# Writes to the output folder the stripped library with a link to its symbol file, the symbol file <library>.debug, and
# the linker map.
set -euo pipefail
objcopy=$1
sources=$2
library=$3
output=$4
name=$(basename "$library")

"$objcopy" --preserve-dates --only-keep-debug "$library" "$output/$name.debug"
# The link contains the symbol file's checksum. Without --preserve-dates the library would get the current time.
"$objcopy" --preserve-dates --strip-all --add-gnu-debuglink="$output/$name.debug" "$library" "$output/$name"
# The linker map has full paths of the inputs.
sed "s|$sources/||g" "$library.map" >"$output/$name.map"
touch "$output/$name" "$output/$name.debug"
