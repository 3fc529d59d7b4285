#!/usr/bin/env bash
# Lints sources with clang-tidy, configured by .clang-tidy and tests/.clang-tidy:
#
#   lint.sh                  product and tools, with the headers that they include
#   lint.sh --all            tests, benchmarks and samples too; not clean yet
#   lint.sh file...          the named files; a header is linted through a source that includes it
#   lint.sh --since commit   product and tool files changed since the commit, committed or not
#
# Uses the flags of the build that a file belongs to, windows or native. JOBS sets the number of parallel jobs. Fails on
# any finding.
set -euo pipefail
cd "$(dirname "$0")/.."

# Clang derives the target from the compiler's name but does not find its C++ headers.
compiler=i686-w64-mingw32-g++-win32
headers=$(dirname "$("$compiler" -print-libgcc-file-name)")/include/c++
export windows_arguments="--extra-arg=-isystem$headers --extra-arg=-isystem$headers/i686-w64-mingw32"

# Separate builds, because clang cannot read GCC's precompiled headers.
for preset in windows native; do
    cmake --preset "$preset" -B "build/lint/$preset" -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON >/dev/null
done
# Generated sources and headers.
cmake --build build/lint/windows --target jobobjects_typelib >/dev/null

lint_one() {
    local number=$1 total=$2 file=$3 build=build/lint/windows arguments=$windows_arguments
    if ! grep -q "\"file\": \".*/$file\"" "$build/compile_commands.json"; then
        build=build/lint/native
        arguments=
    fi
    echo "[$number/$total] $file"
    # The build turns off some GCC warnings that clang does not know.
    # shellcheck disable=SC2086
    clang-tidy --quiet -p "$build" --extra-arg=-Wno-unknown-warning-option $arguments "$file" 2>/dev/null
}
export -f lint_one

# Keeps the input files that must be clean.
required() {
    grep -E '^(common|JobObjects|runtime|tools)/' || true
}

built_sources() {
    cat build/lint/*/compile_commands.json |
        sed -n "s|^ *\"file\": \"$PWD/\(.*\.cpp\)\"|\1|p" | grep -v '^build/' | sort -u
}

# Maps the input files to sources: a header to the source of the same name, else to one that includes it.
sources_of() {
    local file
    while read -r file; do
        case $file in
        *.cpp) echo "$file" ;;
        *.h)
            if [ -e "${file%.h}.cpp" ]; then
                echo "${file%.h}.cpp"
            else
                git grep -l "#include \"\(.*/\)\?$(basename "$file")\"" -- '*.cpp' | head -n 1
            fi
            ;;
        esac
    done | sort -u
}

if [ $# = 0 ]; then
    wanted=$(built_sources | required)
elif [ "$1" = --all ]; then
    wanted=$(built_sources)
elif [ "$1" = --since ]; then
    wanted=$({ git diff --name-only --diff-filter=d "$2"; git ls-files --others --exclude-standard; } | required | sources_of | required)
else
    wanted=$(printf '%s\n' "$@" | sources_of)
fi
mapfile -t files < <(comm -12 <(echo "$wanted" | sort -u) <(built_sources))
if [ ${#files[@]} = 0 ]; then
    echo "lint: no file to lint"
    exit 0
fi
for i in "${!files[@]}"; do
    printf '%s\0' $((i + 1)) ${#files[@]} "${files[i]}"
done | xargs -0 -n 3 -P "${JOBS:-$(nproc)}" bash -c 'lint_one "$@"' lint
echo "lint: no findings in ${#files[@]} files"
