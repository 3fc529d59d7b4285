#!/usr/bin/env bash
# Unpacks the client kit and builds a client with it. Nothing else of this tree is used but the toolchain file:
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
cmake -G Ninja -S "$here/consumer" -B "$work/build" -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_TOOLCHAIN_FILE="$toolchain" \
    -DJobObjects_DIR="$work/$(basename "$kit" .zip)/lib/cmake/JobObjects"
cmake --build "$work/build"
