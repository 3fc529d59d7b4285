#!/usr/bin/env bash
# Builds a host or plug-in with the compiler's shared runtime and copies the runtime's DLLs next to it:
#
#   build_shared.sh <compiler> <output> <argument...>
set -euo pipefail

compiler=$1
output=$2
shift 2
mkdir -p "$(dirname "$output")"
"$compiler" -std=c++20 -O1 -g0 -Wall -Wextra -Werror -DUNICODE -D_UNICODE -DWIN32_LEAN_AND_MEAN -DNOMINMAX \
    -o "$output" "$@" -lole32 -loleaut32 -luuid -lntdll
for runtime in libgcc_s_dw2-1.dll libgcc_s_seh-1.dll libstdc++-6.dll libwinpthread-1.dll; do
    file=$("$compiler" -print-file-name="$runtime")
    if [ -e "$file" ]; then # the first is of 32 bits, the second of 64; only one thread model has the last
        cp "$file" "$(dirname "$output")"
    fi
done
