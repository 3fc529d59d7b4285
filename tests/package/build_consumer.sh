#!/usr/bin/env bash
# Unpacks the client kit, and builds a client and the kit's own sample with it. Nothing else of this tree is used but the
# toolchain file:
#
#   build_consumer.sh <kit.zip> <work folder> <toolchain file>
set -euo pipefail
kit=$1
work=$2
toolchain=$3
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
rm -rf "$work"
mkdir -p "$work"
python3 -m zipfile -e "$kit" "$work"
unpacked=$work/$(basename "$kit" .zip)

build() {
    cmake -G Ninja -S "$1" -B "$2" -DCMAKE_BUILD_TYPE=Release -DCMAKE_TOOLCHAIN_FILE="$toolchain" "${@:3}"
    cmake --build "$2"
}
build "$here/consumer" "$work/build" "-DJobObjects_DIR=$unpacked/lib/cmake/JobObjects"
# The sample finds the kit that it is in.
build "$unpacked/samples/cpp" "$work/samples" -DCMAKE_EXE_LINKER_FLAGS=-static
