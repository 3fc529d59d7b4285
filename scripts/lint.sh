#!/usr/bin/env bash
# Lints sources with clang-tidy, as .clang-tidy and tests/.clang-tidy say:
#
#   lint.sh                  the product and the tools, with the headers that they include
#   lint.sh --all            tests, benchmarks and samples too; not clean yet
#   lint.sh file...          these; a header is linted through a source that includes it
#   lint.sh --since commit   of the product and the tools, what has changed since this commit, committed or not
#
# Each file is read with the flags of its own build, windows or native. JOBS sets the number of files at a time. Fails
# when there is a finding.
set -euo pipefail
cd "$(dirname "$0")/.."

# Clang knows the target by the compiler's name, but does not find the C++ headers of this compiler.
compiler=i686-w64-mingw32-g++-win32
headers=$(dirname "$("$compiler" -print-libgcc-file-name)")/include/c++
export windows_arguments="--extra-arg=-isystem$headers --extra-arg=-isystem$headers/i686-w64-mingw32"

# In builds of their own: clang cannot read the precompiled headers of GCC.
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
    # Clang does not know every warning that the build turns off for GCC.
    # shellcheck disable=SC2086
    clang-tidy --quiet -p "$build" --extra-arg=-Wno-unknown-warning-option $arguments "$file" 2>/dev/null
}
export -f lint_one

# Of the files on the input, the ones that have to be clean.
required() {
    grep -E '^(common|JobObjects|runtime|tools)/' || true
}

built_sources() {
    cat build/lint/*/compile_commands.json |
        sed -n "s|^ *\"file\": \"$PWD/\(.*\.cpp\)\"|\1|p" | grep -v '^build/' | sort -u
}

# The sources to read for the files on the input: for a header, the source of its name or one that includes it.
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
