#!/usr/bin/env bash
# Runs a test program in a new Wine prefix of its own, for tests that need a registry to themselves or leave a
# process behind:
#
#   run_isolated.sh <prefix> <library to register, or "no"> <program> [argument...]
#
# The prefix is made afresh for each run: Wine's marshaller registers a type library that it finds through a
# manifest.
#
# A surrogate process never ends and keeps open whatever output it was started with, and who waits for that
# output waits for ever. So all output goes to a file, which is printed when the whole prefix has been stopped.
set -euo pipefail

export WINEPREFIX=$1
library=$2
shift 2
source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/wine-session.sh"
output=$WINEPREFIX.txt
stop_wine >/dev/null 2>&1 # of a run that was interrupted
rm -rf "$WINEPREFIX"
mkdir -p "$WINEPREFIX"

run() {
    start_wine &&
        { [ "$library" = no ] || "$wine" regsvr32 /s "$(windows_path "$library")"; } &&
        "$wine" "$@"
}

status=0
run "$@" >"$output" 2>&1 </dev/null || status=$?
stop_wine >/dev/null 2>&1
cat "$output"
exit "$status"
