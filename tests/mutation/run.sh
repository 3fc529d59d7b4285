#!/usr/bin/env bash
# Tests the tests: changes one token of the product at a time (a comparison, a constant, a dropped call), builds it for
# 32-bit Windows, platform-neutral code also natively, and runs tests until one fails. Prints the mutants that no test
# notices, and the score: the share of noticed mutants. Mutants with unchanged object files, and those of equivalent.txt,
# do not count.
# Usage: tests/mutation/run.sh [COUNT] [SEED]     a sample of all mutants; 300 and 1 by default
#        tests/mutation/run.sh again              the last sample's survivors, and what an interrupted run left out
# JOBS sets the number of workers. Each has its own copy of the tree in build/mutation.
set -euo pipefail
cd "$(dirname "$0")/../.."
case ${1-} in
    again) sample=(again) ;;
    *[!0-9]*)
        sed -n '2,/^set/{/^set/d;s/^# \{0,1\}//p}' "$0" >&2
        exit 2
        ;;
    *) sample=("${1:-300}" "${2:-1}") ;;
esac

# Copies the tree to the folder $1 and configures builds there. Light optimisation compiles quickly and removes most
# differences that no program can notice.
prepare() {
    local copy=$1 file
    mkdir -p "$copy"
    # Unchanged files keep their time, so that nothing is built twice.
    while IFS= read -r -d '' file; do
        cmp -s "$file" "$copy/$file" || cp --parents "$file" "$copy"
    done < <(git ls-files -z --cached --others --exclude-standard)
    echo 'add_compile_options(-w -g0)' >>"$copy/cmake/CompilerOptions.cmake"
    (
        cd "$copy"
        export CCACHE_BASEDIR=$copy
        cmake --preset native -DCMAKE_BUILD_TYPE=None -DCMAKE_CXX_FLAGS=-O1
        cmake --preset windows -DCMAKE_BUILD_TYPE=None -DCMAKE_CXX_FLAGS=-O1
    ) >"$copy.log" 2>&1 || { tail -20 "$copy.log" >&2; exit 1; }
}

mkdir -p build/mutation
copies=()
emulators=()
for ((worker = 1; worker <= ${JOBS:-$(nproc)}; worker++)); do
    copies+=("$PWD/build/mutation/$worker")
    prepare "${copies[-1]}"
    emulators+=("${copies[-1]}/scripts/wine.sh")
done
source scripts/wine-session.sh
start_wine "${emulators[@]}"
export CCACHE_READONLY=1 # mutants would fill the cache
python3 -B tests/mutation/mutate.py "${sample[@]}" "${copies[@]}"
