#!/bin/sh
# Runs a Windows program under 32-bit Wine in a private prefix: WINEPREFIX, by default build/wine.
#
# Wine's own processes, such as the desktop, inherit the output of the program that starts them and outlive it. A reader
# that waits for the end of that output, such as ctest, would hang. The program therefore writes to files, which are
# copied to the output after it ends.
here=$(cd "$(dirname "$0")" && pwd)
WINEPREFIX=${WINEPREFIX:-$here/../build/wine}
export WINEPREFIX WINEARCH=win32 WINEDLLOVERRIDES="mscoree,mshtml=" DISPLAY= WINEDEBUG=${WINEDEBUG:--all}
mkdir -p "$(dirname "$WINEPREFIX")"
output=$(mktemp)
errors=$(mktemp)
trap 'rm -f "$output" "$errors"' EXIT
status=0
wine "$@" >"$output" 2>"$errors" || status=$?
cat "$output"
cat "$errors" >&2
exit "$status"
