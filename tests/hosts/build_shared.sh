#!/usr/bin/env bash
# Builds a host or plug-in the usual way, with the compiler's runtime in shared libraries, which are put beside it:
#
#   build_shared.sh <compiler> <output> <argument...>
set -euo pipefail

compiler=$1
output=$2
shift 2
mkdir -p "$(dirname "$output")"
"$compiler" -std=c++20 -O1 -g0 -Wall -Wextra -Werror -DUNICODE -D_UNICODE -DWIN32_LEAN_AND_MEAN -DNOMINMAX \
    -o "$output" "$@" -lole32 -loleaut32 -luuid -lntdll
for runtime in libgcc_s_dw2-1.dll libstdc++-6.dll libwinpthread-1.dll; do
    file=$("$compiler" -print-file-name="$runtime")
    if [ -e "$file" ]; then # the last belongs to one thread model
        cp "$file" "$(dirname "$output")"
    fi
done
