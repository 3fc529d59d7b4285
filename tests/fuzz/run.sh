#!/usr/bin/env bash
# Fuzzes the platform-neutral code. Usage: tests/fuzz/run.sh [--executions N] [--fast N] [--hours N] [harness...]
#
# Each harness (default: all) runs --executions inputs (default 5 million) with the address and undefined behaviour
# sanitizers; the parser then runs --fast inputs (default 45 million) without them but with the same checks. Nine
# tenths of the inputs have at most 400 bytes, the others at most 4096.
#
# With --hours, JOBS processes (default: one per core) fuzz for that time instead: every harness once, then the one
# furthest below its goal. Each turn has a new seed, takes three quarters of its time without sanitizers, and adds the
# inputs that reach new code to the corpus.
#
# Prints a row per run, adds its executions to executions.tsv, and fails if a harness fails; the failing inputs remain
# in build/fuzz-work/<harness>/.
set -euo pipefail
cd "$(dirname "$0")/../.."

executions=5000000
fast=45000000
hours=
harnesses=()
while [ $# -gt 0 ]; do
    case $1 in
    --executions) executions=$2; shift 2 ;;
    --fast) fast=$2; shift 2 ;;
    --hours) hours=$2; shift 2 ;;
    -*) sed -n '2,14s/^# \{0,1\}//p' "$0" >&2; exit 2 ;;
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
totals=$PWD/tests/fuzz/executions.tsv
mkdir -p "$work"
rm -f "$work/stop" "$work/failed"
trap 'touch "$work/stop"' INT TERM # runs keep their counts
build() {
    { cmake --preset "$1" && cmake --build --preset "$1"; } >"$work/$1.log" 2>&1 ||
        { cat "$work/$1.log" >&2; exit 1; }
}

statistic() {
    sed -n "s/^stat::$1: *//p" "$2" | tail -1
}

# executed LOG: a run that was stopped has no statistics, only its last progress line.
executed() {
    local count
    count=$(statistic number_of_executed_units "$1")
    [ -n "$count" ] || count=$(sed -n 's/^#\([0-9]*\).*/\1/p' "$1" | tail -1)
    echo "${count:-0}"
}

# add_executions HARNESS PRESET COUNT SEED
add_executions() {
    (
        flock 9
        grep -q "^$1"$'\t' "$totals" || printf '%s\t0\t0\n' "$1" >>"$totals"
        awk -F '\t' -v OFS='\t' -v harness="$1" -v preset="$2" -v count="$3" -v seed="$4" -v date="$(date -u +%F)" '
            $1 == harness { $(preset == "fuzz" ? 2 : 3) += count; $4 = seed; $5 = date }
            { print }' "$totals" >"$totals.new"
        mv "$totals.new" "$totals"
    ) 9>"$work/lock"
}

# run PRESET HARNESS LIMIT MAX_LENGTH: prints one row of the table. libFuzzer returns 72 when it is interrupted.
run() {
    [ ! -e "$work/stop" ] || return 0
    local folder=$work/$2 seed=$((RANDOM << 15 | RANDOM)) result=ok start=$SECONDS log covered
    log=$folder/$1.$4.$seed.log
    mkdir -p "$folder/corpus"
    # Smaller reports and a quarantine of one input's memory are faster. Where every input throws, searching the stack
    # for use after return takes nine tenths of the time.
    ASAN_OPTIONS=malloc_context_size=0:quarantine_size_mb=1$([ "$2" != versions ] ||
        echo :detect_stack_use_after_return=0) \
        "build/$1/tests/fuzz/$2_fuzz" "$3" -seed="$seed" -max_len="$4" -dict=tests/fuzz/jobobjects.dict \
        -artifact_prefix="$folder/" -timeout=20 -rss_limit_mb=4096 -print_final_stats=1 \
        "$folder/corpus" "tests/fuzz/corpus/$2" >"$log" 2>&1 || [ $? = 72 ] || result=BROKEN
    add_executions "$2" "$1" "$(executed "$log")" "$seed"
    covered=$(grep -o 'cov: [0-9]* ft: [0-9]*' "$log" | tail -1 || true)
    printf '%-16s %-9s %6s %11s %7s %9s  %-22s %s\n' "$2" "$1" "$4" "$(executed "$log")" \
        $((SECONDS - start)) "$(statistic average_exec_per_sec "$log")" "$covered" "$result"
    if [ "$result" != ok ]; then
        touch "$work/failed"
        grep -E 'wrong:|ERROR|SUMMARY|runtime error|Test unit written' "$log" >&2 || tail -5 "$log" >&2
    fi
}

# furthest_below_goal: the goals are 500 million executions for the parser and 50 million for each other harness.
furthest_below_goal() {
    awk -F '\t' -v harnesses=" ${harnesses[*]} " '
        index(harnesses, " " $1 " ") {
            reached = ($2 + $3) / ($1 == "parser" ? 10 : 1)
            if (name == "" || reached < least) { name = $1; least = reached }
        }
        END { print name }' "$totals"
}

# merge HARNESS: adds the inputs that reach new code, the smallest first, while the corpus is below 64 KB. Failing
# inputs are never in the work folder's corpus.
merge() {
    local merged=$work/$1/merged found=$work/$1/found corpus=tests/fuzz/corpus/$1 input
    (
        flock 9
        rm -rf "$merged" "$found"
        cp -r "$corpus" "$merged"
        # A copy, because the merge starts again whenever another process replaces an input by a smaller one.
        cp -rl "$work/$1/corpus" "$found" 2>/dev/null || true
        "build/fuzz/tests/fuzz/$1_fuzz" -merge=1 -set_cover_merge=1 -use_counters=0 -max_len=4096 \
            -artifact_prefix="$work/$1/" "$merged" "$found" >"$work/$1/merge.log" 2>&1 ||
            { touch "$work/failed"; tail -5 "$work/$1/merge.log" >&2; return; }
        find "$merged" -type f -printf '%s %f\n' | sort -n | while read -r size input; do
            [ -e "$corpus/$input" ] || [ $(($(cat "$corpus"/* | wc -c) + size)) -gt 65536 ] ||
                cp "$merged/$input" "$corpus/"
        done
    ) 9>"$work/$1/lock"
}

# turn HARNESS SECONDS: one length for all inputs. Most records have more than 100 bytes; the parser needs fewer, and
# is then half as fast again.
turn() {
    local length=400
    case $1:$((RANDOM % 10)) in
    *:0) length=4096 ;;
    parser:[1-6]) length=100 ;;
    esac
    run fuzz-fast "$1" -max_total_time=$(($2 * 3 / 4)) "$length"
    run fuzz "$1" -max_total_time=$(($2 - $2 * 3 / 4)) "$length"
    merge "$1"
}

# run_hours HOURS
run_hours() {
    local jobs=${JOBS:-$(nproc)} total started=0 each harness
    total=$(awk -v hours="$1" 'BEGIN { printf "%d", hours * 3600 }')
    each=$((total * jobs / ${#harnesses[@]}))
    [ "$each" -le 120 ] || each=120
    [ "$each" -ge 8 ] || each=8
    while [ ! -e "$work/stop" ] && { [ "$started" -lt ${#harnesses[@]} ] || [ $((SECONDS + each)) -le "$total" ]; }; do
        if [ "$(jobs -rp | wc -l)" -ge "$jobs" ]; then
            wait -n || true
            continue
        fi
        harness=${harnesses[started]:-$(furthest_below_goal)}
        started=$((started + 1))
        turn "$harness" "$each" &
    done
    wait
}

build fuzz
build fuzz-fast
printf '%-16s %-9s %6s %11s %7s %9s  %-22s %s\n' \
    harness build length executions seconds per-second 'edges, features' result
if [ -n "$hours" ]; then
    run_hours "$hours"
else
    for harness in "${harnesses[@]}"; do
        run fuzz "$harness" -runs=$((executions * 9 / 10)) 400
        run fuzz "$harness" -runs=$((executions - executions * 9 / 10)) 4096
        if [ "$harness" = parser ] && [ "$fast" -gt 0 ]; then
            run fuzz-fast "$harness" -runs=$((fast * 9 / 10)) 400
            run fuzz-fast "$harness" -runs=$((fast - fast * 9 / 10)) 4096
        fi
    done
fi
[ ! -e "$work/failed" ]
