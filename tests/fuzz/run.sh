#!/usr/bin/env bash
# Fuzzes the platform-neutral code. Usage: tests/fuzz/run.sh [--executions N] [--fast N] [harness...]
#
# Each harness (default: all) runs --executions inputs (default 5 million) with the address and undefined behaviour
# sanitizers; the parser then runs --fast inputs (default 45 million) without them but with the same checks. Nine
# tenths of the inputs have at most 400 bytes, the others at most 4096. Prints a row per run and fails if a harness
# fails; the failing inputs remain in build/fuzz-work/<harness>/.
set -euo pipefail
cd "$(dirname "$0")/../.."

executions=5000000
fast=45000000
harnesses=()
while [ $# -gt 0 ]; do
    case $1 in
    --executions) executions=$2; shift 2 ;;
    --fast) fast=$2; shift 2 ;;
    -*) sed -n '2,7s/^# \{0,1\}//p' "$0" >&2; exit 2 ;;
    *) harnesses+=("$1"); shift ;;
    esac
done
if [ ${#harnesses[@]} = 0 ]; then
    for source in tests/fuzz/*_fuzz.cpp; do
        source=${source##*/}
        harnesses+=("${source%_fuzz.cpp}")
    done
fi

work=$PWD/build/fuzz-work
mkdir -p "$work"
build() {
    { cmake --preset "$1" && cmake --build --preset "$1"; } >"$work/$1.log" 2>&1 ||
        { cat "$work/$1.log" >&2; exit 1; }
}

statistic() {
    sed -n "s/^stat::$1: *//p" "$2" | tail -1
}

# run PRESET HARNESS EXECUTIONS MAX_LENGTH: prints one row of the table.
failed=0
run() {
    local folder=$work/$2 log=$work/$2.$1.$4.log result=ok start=$SECONDS covered
    mkdir -p "$folder/corpus"
    "build/$1/tests/fuzz/$2_fuzz" -runs="$3" -max_len="$4" -dict=tests/fuzz/jobobjects.dict \
        -artifact_prefix="$folder/" -timeout=20 -rss_limit_mb=4096 -print_final_stats=1 \
        "$folder/corpus" "tests/fuzz/corpus/$2" >"$log" 2>&1 || result=BROKEN
    covered=$(grep -o 'cov: [0-9]* ft: [0-9]*' "$log" | tail -1 || true)
    printf '%-16s %-9s %6s %11s %7s %9s  %-22s %s\n' "$2" "$1" "$4" "$(statistic number_of_executed_units "$log")" \
        $((SECONDS - start)) "$(statistic average_exec_per_sec "$log")" "$covered" "$result"
    if [ "$result" != ok ]; then
        failed=1
        grep -E 'wrong:|ERROR|SUMMARY|runtime error|Test unit written' "$log" >&2 || tail -5 "$log" >&2
    fi
}

build fuzz
build fuzz-fast
printf '%-16s %-9s %6s %11s %7s %9s  %-22s %s\n' \
    harness build length executions seconds per-second 'edges, features' result
for harness in "${harnesses[@]}"; do
    run fuzz "$harness" $((executions * 9 / 10)) 400
    run fuzz "$harness" $((executions - executions * 9 / 10)) 4096
    if [ "$harness" = parser ] && [ "$fast" -gt 0 ]; then
        run fuzz-fast "$harness" $((fast * 9 / 10)) 400
        run fuzz-fast "$harness" $((fast - fast * 9 / 10)) 4096
    fi
done
exit "$failed"
