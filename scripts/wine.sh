#!/bin/sh
# Runs a Windows program under 32-bit Wine in a private prefix: WINEPREFIX, by default build/wine. WINEARCH=win64 selects
# 64-bit Wine, which runs both kinds of program, and build/wine-64.
#
#   wine.sh program argument...
#   wine.sh --prefix                print the prefix
#
# Wine's own processes, such as the desktop, inherit the output of the program that starts them and outlive it. A reader
# that waits for the end of that output, such as ctest, would hang. The program therefore writes to files, which are
# copied to the output after it ends.
#
# Without a display, the Wayland driver of Wine 10 would write to the errors.
set -e
here=$(cd "$(dirname "$0")" && pwd)
export WINEARCH=${WINEARCH:-win32} WINEDLLOVERRIDES="mscoree,mshtml,winewayland.drv=" DISPLAY= WINEDEBUG=${WINEDEBUG:--all}
wine=wine
prefix=wine
if [ "$WINEARCH" = win64 ]; then
    # The plain command finds programs, such as regsvr32, as a 32-bit program would.
    wine=/usr/lib/wine/wine64
    prefix=wine-64
    # A random start of the heap falls on the page of Windows's shared data once in some thousand runs. Wine then ends
    # with 1 and says nothing. Some containers do not allow a fixed start.
    ! setarch -R true 2>/dev/null || wine="setarch -R $wine"
fi
export WINEPREFIX="${WINEPREFIX:-$here/../build/$prefix}"
mkdir -p "$WINEPREFIX"
if [ "$1" = --prefix ]; then
    cd "$WINEPREFIX" && pwd
    exit
fi
output=$(mktemp)
errors=$(mktemp)
trap 'rm -f "$output" "$errors"' EXIT
status=0
$wine "$@" >"$output" 2>"$errors" || status=$?
cat "$output"
cat "$errors" >&2
exit "$status"
