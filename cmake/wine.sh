#!/bin/sh
# Runs a Windows program under 32-bit Wine in the build's private prefix.
# The prefix is WINEPREFIX if the caller has set it, else build/wine beside the sources.
here=$(cd "$(dirname "$0")" && pwd)
WINEPREFIX=${WINEPREFIX:-$here/../build/wine}
export WINEPREFIX WINEARCH=win32 WINEDLLOVERRIDES="mscoree,mshtml=" DISPLAY= WINEDEBUG=${WINEDEBUG:--all}
mkdir -p "$(dirname "$WINEPREFIX")"
exec wine "$@"
