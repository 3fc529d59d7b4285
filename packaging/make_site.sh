#!/usr/bin/env bash
# Builds the documentation for the client kit, with the date of the packages:
#
#   make_site.sh <output folder>
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
cd "$here"
SOURCE_DATE_EPOCH=$(python3 -B -c "import source_date; print(source_date.seconds())")
export SOURCE_DATE_EPOCH
"$here/../docs/build.sh" "$1"
