#!/usr/bin/env bash
# Builds and registers the library, then runs the sample clients (samples/) against it, under Wine, and reports their
# jobs on a page.
#
#   ./demo.sh [--xml]     --xml also shows the XML of each job
set -euo pipefail
cd "$(dirname "$0")"

./build.sh
source scripts/wine-session.sh
start_wine
"$wine" regsvr32 /s "$(windows_path "$PWD/dist/Tarnwick.dll")"

# cscript returns 0 even for a script that broke off, so check the closing line.
run_client() {
    local script=$1 output
    echo
    echo "== samples/$script"
    output=$("$wine" cscript //nologo "$(windows_path "$PWD/samples/$script")" --xml | tr -d '\r')
    if [ "$show_xml" ]; then echo "$output"; else grep -v '^<PrintJob' <<<"$output"; fi
    [[ $(tail -n 1 <<<"$output") =~ ^All\ [1-9][0-9]*\ jobs\ agree\.$ ]] ||
        { echo "demo: samples/$script did not reach its end" >&2; exit 1; }
    grep '^<PrintJob' <<<"$output" >>"$jobs"
}

show_xml=
[ "${1-}" != --xml ] || show_xml=yes
jobs=build/demo/jobs.xml
mkdir -p build/demo
rm -f "$jobs"
run_client print_job.vbs
run_client print_job.js

echo
echo "== the report of these jobs"
"$wine" dist/jobobjects.exe report -o build/demo/report.html "$jobs"
echo "Open $PWD/build/demo/report.html"
