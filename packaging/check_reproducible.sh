#!/usr/bin/env bash
# Checks that the release is reproducible bit by bit: builds the last commit twice, in folders with different names and
# with different file permissions, without a compiler cache, and compares all files.
#
#   check_reproducible.sh [work folder]     default: build/reproducible
#
# Takes some minutes. JOBS sets the number of parallel compilers.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
work=${1:-$root/build/reproducible}
export CCACHE_DISABLE=1
SOURCE_DATE_EPOCH=$(git -C "$root" log -1 --format=%ct)
export SOURCE_DATE_EPOCH
rm -rf "$work"
mkdir -p "$work"
work=$(cd "$work" && pwd)

build() {
    local folder=$1 step
    mkdir -p "$folder"
    git -C "$root" archive HEAD | tar -x -m -C "$folder"
    for step in package.sh build.sh; do
        echo "== $step in $folder"
        (cd "$folder" && "./$step") >"$folder.$step.log" 2>&1 || { tail -n 20 "$folder.$step.log"; exit 1; }
    done
}

# Writes the checksums of all built files to $1.sums.
sums() {
    (cd "$1" && find release dist -type f | LC_ALL=C sort | xargs sha256sum) >"$1.sums"
}

build "$work/first"
umask 077
build "$work/second_with_a_longer_name"
sums "$work/first"
sums "$work/second_with_a_longer_name"
diff "$work/first.sums" "$work/second_with_a_longer_name.sums"
echo "identical: $(wc -l <"$work/first.sums") files"
