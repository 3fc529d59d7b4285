#!/usr/bin/env bash
# Runs installer_test.py in a new Wine prefix:
#
#   installer_test.sh <prefix> <JobObjects.idl> <installed files> <older.msi> <newer version> <registration-free.zip>
#       <client.exe>
#
# Makes the newer installer itself, with the same files.
set -euo pipefail

export WINEPREFIX=$1
idl=$2
files=$3
older=$4
version=$5
shift 5
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
source "$here/../../scripts/wine-session.sh"
stop_wine >/dev/null 2>&1 # left over from an interrupted run
rm -rf "$WINEPREFIX"
mkdir -p "$WINEPREFIX"
start_wine >"$WINEPREFIX.txt" 2>&1 </dev/null || { cat "$WINEPREFIX.txt"; exit 1; }
newer=$WINEPREFIX/newer.msi
python3 -B "$here/../../packaging/make_installer.py" "$idl" "$version" "$files" "$newer"
python3 -B "$here/installer_test.py" "$wine" "$older" "$newer" "$version" "$@"
