#!/usr/bin/env bash
# Measures test coverage: lines, branches and conditions (MC/DC) of the platform-neutral code in the native tests, lines
# and branches of the COM layer in the Windows tests. Branches taken only by an exception, and those the compiler proves
# unreachable, do not count. Windows tests of the delivered files, of failing system calls and of one large input are
# left out. Prints the results and fails if one is below its goal.
# Usage: tests/coverage/run.sh [native|conditions|windows]...; JOBS sets the number of parallel compilers and tests.
set -euo pipefail
cd "$(dirname "$0")/../.."
jobs=${JOBS:-$(nproc)}
parts=("$@")
[ ${#parts[@]} -gt 0 ] || parts=(native conditions windows)
logs=$PWD/build/coverage
mkdir -p "$logs"

# Builds the preset $1 and runs its tests.
run_tests() {
    local preset=$1
    cmake --preset "$preset" >"$logs/$preset.log"
    cmake --build --preset "$preset" --parallel "$jobs" >>"$logs/$preset.log" 2>&1 ||
        { tail -20 "$logs/$preset.log" >&2; exit 1; }
    find "build/$preset" '(' -name '*.gcda' -o -name '*.profraw' ')' -delete
    ctest --preset "$preset" --parallel "$jobs" --no-tests=error >"$logs/$preset.tests.log" 2>&1 ||
        { sed -n '/The following tests FAILED/,$p' "$logs/$preset.tests.log" >&2; exit 1; }
}

# measure PRESET GCOV GOALS SOURCE...: compares lines and branches with the goals.
measure() {
    local preset=$1 gcov=$2 goals=$3 folder=$PWD/build/$1 filters=() source
    shift 3
    for source in "$@"; do
        filters+=(--filter "$source")
    done
    run_tests "$preset"
    # short_characters has the same lines with other branches, which gcovr would add.
    # The goals are a list of options.
    # shellcheck disable=SC2086
    gcovr --root . --object-directory "$folder" --gcov-executable "$gcov" --exclude-throw-branches \
        --exclude-directories '.*/short_characters\.dir' --exclude-unreachable-branches "${filters[@]}" \
        --txt "$logs/$preset.txt" --print-summary $goals "$folder" 2>"$logs/$preset.gcovr.log" ||
        { tail -5 "$logs/$preset.gcovr.log" >&2; return 1; }
}

# measure_conditions GOAL: compares the conditions with the goal. Each must have decided its expression both ways.
measure_conditions() {
    local preset=native-conditions folder=$PWD/build/native-conditions
    # One file per program, into which its processes merge their counters.
    LLVM_PROFILE_FILE=$folder/%m.profraw run_tests "$preset"
    llvm-profdata-19 merge -o "$folder/conditions.profdata" "$folder"/*.profraw
    llvm-cov-19 report --show-mcdc-summary --ignore-filename-regex='(^|/)tests/' \
        -instr-profile "$folder/conditions.profdata" "$folder/tests/unit/unit_tests" \
        >"$logs/$preset.txt" 2>"$logs/$preset.report.log"
    # A condition that one program's compiler folds and another program decides counts as -1 missed, in 32 bits.
    awk -v goal="$1" '
        NF < 6 || $1 == "TOTAL" || $(NF - 2) !~ /^[0-9]+$/ { next }
        { conditions += $(NF - 2); missed += $(NF - 1) > $(NF - 2) ? 0 : $(NF - 1) }
        END {
            percent = 100 * (conditions - missed) / conditions
            printf "conditions: %.1f%% (%d out of %d)\n", percent, conditions - missed, conditions
            exit (percent < goal)
        }' "$logs/$preset.txt"
}

failed=0
for part in "${parts[@]}"; do
    case $part in
    native)
        echo "platform-neutral code (goal: 95 % of the lines, 90 % of the branches)"
        measure native-coverage gcov "--fail-under-line 95 --fail-under-branch 90" \
            common/ JobObjects/contents/ || failed=1
        ;;
    conditions)
        echo "platform-neutral code (goal: 95 % of the conditions)"
        measure_conditions 95 || failed=1
        ;;
    windows)
        source scripts/wine-session.sh
        start_wine
        echo "COM layer (goal: 90 % of the lines, 85 % of the branches)"
        measure windows-coverage i686-w64-mingw32-gcov-win32 "--fail-under-line 90 --fail-under-branch 85" \
            JobObjects/ 'common/(Clock|QxRegistryHdl|QxSystem|com/ErrorReporting)\.cpp' || failed=1
        ;;
    *)
        sed -n '2,6s/^# \{0,1\}//p' "$0" >&2
        exit 2
        ;;
    esac
done
exit "$failed"
