#!/usr/bin/env bash
# Runs a test in a new Wine prefix of WINEARCH, with the emulator as its first argument, and removes the prefix:
#
#   in_new_prefix.sh <prefix> <test.py> <argument>...
set -euo pipefail

export WINEPREFIX=$1
test=$2
shift 2
source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/wine-session.sh"
remove_wine_prefix "$WINEPREFIX"
start_wine >"$WINEPREFIX.txt" 2>&1 </dev/null || { cat "$WINEPREFIX.txt"; exit 1; }
status=0
python3 -B "$test" "$wine" "$@" || status=$?
remove_wine_prefix "$WINEPREFIX"
exit "$status"
