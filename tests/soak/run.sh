#!/usr/bin/env bash
# Runs the tests of this folder, and others with a count, in full, and prints the figures in docs/reliability.md.
# Takes about twenty minutes. SOAK_SEED selects other random documents and calls, PRESET=windows-64 the 64-bit build.
# With arguments, runs only the tests of these names.
set -euo pipefail
cd "$(dirname "$0")/../.."

scripts/setup.sh
source scripts/wine-session.sh
start_wine
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" --target soak_tests log_tests unload_tests reach_tests
tests=$PWD/build/$preset/tests
"$wine" regsvr32 /s "$(windows_path "$PWD/build/$preset/JobObjects/Tarnwick.dll")"

export OANOCACHE=1 # a cache of freed BSTRs would hide leaks
export SOAK_DOCUMENTS=200000 SOAK_INVOKES=1000000
export UNLOAD_CYCLES=5000 SOAK_OBJECTS=100000
export APARTMENT_ROUNDS=400 SOAK_FIRST_USES=500 SOAK_LOG_ROUNDS=200 SOAK_KILLS=200
export SOAK_MEGABYTES=100 SOAK_DEPTH=1000000

failed=0
run() {
    local program=$1 test=$2
    shift 2
    if [ $# != 0 ] && [[ " $* " != *" $test "* ]]; then
        return
    fi
    echo "== $test"
    cmake "-DCOMMAND=$wine;$tests/$program;$test" -P tests/RunToEnd.cmake </dev/null || failed=1
}

run soak/soak_tests.exe Xml_of_every_class_survives_damaged_documents "$@"
run soak/soak_tests.exe Invoke_of_every_class_survives_any_arguments "$@"
run com/unload_tests.exe Unloading_after_use_and_a_failing_call_leaves_nothing_behind "$@"
run soak/soak_tests.exe Objects_of_every_class_are_created_and_released_without_growth "$@"
run reach/reach_tests.exe Eight_parallel_stas_with_separate_objects_do_not_interfere "$@"
run soak/soak_tests.exe \
    Sixty_four_threads_at_first_use_get_the_same_class_objects_and_a_complete_catalogue "$@"
run log/log_tests.exe Log_file_of_eight_processes_with_rotation_keeps_every_line_once "$@"
run log/log_tests.exe Log_file_of_killed_writers_keeps_the_lines_of_the_others "$@"
run soak/soak_tests.exe Xml_of_a_hundred_megabytes_is_read_or_fails_with_out_of_memory "$@"
run soak/soak_tests.exe \
    Xml_beyond_the_free_memory_fails_with_out_of_memory_and_leaves_the_object_usable "$@"
run soak/soak_tests.exe Xml_of_any_depth_is_read_by_every_class_on_a_stack_of_256_KB "$@"
if [ "$failed" != 0 ]; then
    echo "soak: some tests failed" >&2
    exit 1
fi
