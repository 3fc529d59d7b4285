#!/bin/sh
# Fuzzes the parser. Usage: tests/fuzz/run.sh [seconds] [work folder]; needs clang.
set -eu
root=$(cd "$(dirname "$0")/../.." && pwd)
seconds=${1:-60}
folder=${2:-$root/build/fuzz}
mkdir -p "$folder/corpus"
for document in "$root"/tests/data/*.xml; do
    { printf 'x'; cat "$document"; } > "$folder/corpus/$(basename "$document")"
done
clang++ -std=c++20 -g -O1 -fsanitize=fuzzer,address,undefined -fno-sanitize-recover=all -I"$root" \
    "$root"/tests/fuzz/parser_fuzz.cpp "$root"/tests/unit/XmlDump.cpp "$root"/common/QxXml*.cpp \
    "$root"/common/QxString.cpp "$root"/common/QxMisc.cpp "$root"/common/QxLock.cpp \
    "$root"/common/log/QxLogger.cpp "$root"/common/log/LogFormat.cpp "$root"/common/log/LogStampPosix.cpp \
    -o "$folder/parser_fuzz"
cd "$folder"
exec ./parser_fuzz -max_total_time="$seconds" -max_len=400 -dict="$root/tests/fuzz/markup.dict" corpus
