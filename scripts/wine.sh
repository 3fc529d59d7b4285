#!/bin/sh
# Runs a Windows program under 32-bit Wine in the build's private prefix.
# The prefix is WINEPREFIX if the caller has set it, else build/wine beside the sources.
#
# Wine's own processes, such as the desktop's, inherit the output of the program that happens to start them, and
# live on. Who reads that output to its end, as ctest does, would wait for them. So a program writes to files,
# which are passed on when it has ended.
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
