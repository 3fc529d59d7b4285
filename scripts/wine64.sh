#!/bin/sh
# Runs a Windows program under 64-bit Wine, see wine.sh. Finds programs without a path as a 64-bit program would.
WINEARCH=win64 exec "$(dirname "$0")/wine.sh" "$@"
