#!/usr/bin/env bash
# Runs a test program in a new Wine prefix, for tests that need a registry of their own or leave a process behind, and
# removes the prefix. WINEARCH selects the kind of Wine (wine.sh).
#
#   run_isolated.sh <prefix> <libraries to register, separated by commas, or "no"> <program> [argument...]
#
# Each run makes a new prefix, because Wine's marshaller registers a type library that it finds through a manifest.
#
# A surrogate process never ends and keeps the inherited output open, so a reader of that output would wait forever.
# All output therefore goes to a file, which is printed after the prefix has stopped.
set -euo pipefail

export WINEPREFIX=$1
libraries=$2
shift 2
source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/wine-session.sh"
output=$WINEPREFIX.txt
remove_wine_prefix "$WINEPREFIX"

run() {
    local library
    start_wine || return
    for library in ${libraries//,/ }; do
        [ "$library" = no ] || "$wine" regsvr32 /s "$(windows_path "$library")" || return
    done
    "$wine" "$@"
}

status=0
run "$@" >"$output" 2>&1 </dev/null || status=$?
remove_wine_prefix "$WINEPREFIX"
sed '/^regsvr32: Successfully /d' "$output" # Wine 10 reports it in spite of /s, after the program's closing line
exit "$status"
