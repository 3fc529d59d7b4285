#!/usr/bin/env bash
# Lints sources with clang-tidy, configured by the .clang-tidy files:
#
#   lint.sh                  all sources of the builds, with the headers that they include
#   lint.sh --since commit   the files changed since the commit, committed or not
#   lint.sh file...          the named files; a header is linted through a source that includes it
#
# The benchmarks are linted by name only, because their peers have to be fetched: lint.sh bench/*.cpp
#
# Uses the flags of the first build that a file belongs to: windows, windows-64 or native. JOBS sets the number of parallel jobs. Fails on
# any finding.
set -euo pipefail
cd "$(dirname "$0")/.."

# Clang derives the target from the compiler's name but does not find its C++ headers.
header_arguments() {
    local headers
    headers=$(dirname "$("$1-g++-win32" -print-libgcc-file-name)")/include/c++
    echo "--extra-arg=-isystem$headers --extra-arg=-isystem$headers/$1"
}
windows_arguments=$(header_arguments i686-w64-mingw32)
windows_64_arguments=$(header_arguments x86_64-w64-mingw32)
export windows_arguments windows_64_arguments

# Separate builds, because clang cannot read GCC's precompiled headers.
for preset in windows windows-64 native; do
    cmake --preset "$preset" -B "build/lint/$preset" -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON >/dev/null
done
# An option that clang does not know.
sed -i 's/ -mpreferred-stack-boundary=2//' build/lint/windows/compile_commands.json
# Generated sources and headers.
for preset in windows windows-64; do
    cmake --build "build/lint/$preset" --target jobobjects_typelib wrapped_members >/dev/null
done

lint_one() {
    local number=$1 total=$2 file=$3 preset build arguments
    for preset in windows windows-64 native; do
        build=build/lint/$preset
        grep -q "\"file\": \".*/$file\"" "$build/compile_commands.json" && break
    done
    case $preset in
    windows) arguments=$windows_arguments ;;
    windows-64) arguments=$windows_64_arguments ;;
    *) arguments= ;;
    esac
    echo "[$number/$total] $file"
    # The build turns off some GCC warnings that clang does not know.
    # shellcheck disable=SC2086
    clang-tidy --quiet -p "$build" --extra-arg=-Wno-unknown-warning-option $arguments "$file" 2>/dev/null
}
export -f lint_one

built=$(cat build/lint/*/compile_commands.json |
    sed -n "s|^ *\"file\": \"$PWD/\(.*\.cpp\)\"|\1|p" | grep -v '^build/' | sort -u)

# Prints a built source for the file: a source itself, for a header the source of the same name, else one that includes
# the header, directly or through other headers. Fails if there is none.
source_of() {
    local include user
    case $1 in
    *.cpp) grep -xF "$1" <<<"$built" ;;
    *.h)
        include="#include \"\(.*/\)\?$(basename "$1")\""
        for user in "${1%.h}.cpp" $(git grep -l "$include" -- '*.cpp') $(git grep -l "$include" -- '*.h'); do
            source_of "$user" && return
        done
        return 1
        ;;
    *) return 1 ;;
    esac
}

sources_of_input() {
    local file
    while read -r file; do
        source_of "$file" || true
    done | sort -u
}

without_benchmarks() {
    grep -v '^bench/' || true
}

if [ $# = 0 ]; then
    selected=$(without_benchmarks <<<"$built")
elif [ "$1" = --since ]; then
    changed=$(git diff --name-only --diff-filter=d "$2")
    new=$(git ls-files --others --exclude-standard)
    selected=$(printf '%s\n' "$changed" "$new" | sources_of_input | without_benchmarks)
else
    selected=$(printf '%s\n' "$@" | sources_of_input)
fi
if [ -z "$selected" ]; then
    echo "lint: no file to lint"
    exit 0
fi
if grep -q '^bench/' <<<"$selected"; then
    bench/fetch_peers.sh "$PWD/build/lint/windows/bench/peers"
fi
mapfile -t files <<<"$selected"
for i in "${!files[@]}"; do
    printf '%s\0' $((i + 1)) ${#files[@]} "${files[i]}"
done | xargs -0 -n 3 -P "${JOBS:-$(nproc)}" bash -c 'lint_one "$@"' lint
echo "lint: no findings in ${#files[@]} files"
