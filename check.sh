#!/usr/bin/env bash
# Checks that every change must pass: formatting, build and tests, as in continuous integration, then the databases with
# many jobs, the whole verification kit, the tests compiled by Clang and the full lint. The long checks that
# CONTRIBUTING.md lists, such as tests/mutation/run.sh, are separate.
#
#   ./check.sh [--no-lint]
#
# Stops at the first failure. JOBS sets the number of parallel jobs.
set -euo pipefail
cd "$(dirname "$0")"

lint=yes
case ${1-} in
    '') ;;
    --no-lint) lint= ;;
    *)
        sed -n '2,/^set/{/^set/d;s/^# \{0,1\}//;p}' "$0" >&2
        exit 2
        ;;
esac

.ci/run --no-lint
echo "== a year of jobs in databases"
tests/database/long.sh
echo "== the whole verification kit"
tests/verify/run.sh
echo "== Clang"
tests/clang/run.sh
if [ "$lint" ]; then
    echo "== lint"
    scripts/lint.sh
fi
echo
echo "All checks passed."
