#!/usr/bin/env bash
# Lints the product's sources with clang-tidy, as .clang-tidy says:
#
#   lint.sh [file...]     by default all sources of the library and the tools
#
# Each file is read with the flags of its own build, so build/windows and build/native must have been configured.
# JOBS sets the number of files at a time. Takes some minutes; fails when there is a finding.
set -euo pipefail
cd "$(dirname "$0")/.."

# Clang knows the target by the compiler's name, but does not find the C++ headers of this compiler.
compiler=i686-w64-mingw32-g++-win32
headers=$(dirname "$("$compiler" -print-libgcc-file-name)")/include/c++
export windows_arguments="--extra-arg=-isystem$headers --extra-arg=-isystem$headers/i686-w64-mingw32"

lint_one() {
    local number=$1 total=$2 file=$3 build=build/windows arguments=$windows_arguments
    if ! grep -q "\"file\": \".*/$file\"" "$build/compile_commands.json"; then
        build=build/native
        arguments=
    fi
    echo "[$number/$total] $file"
    # Clang does not know every warning that the build turns off for GCC.
    # shellcheck disable=SC2086
    clang-tidy --quiet -p "$build" --extra-arg=-Wno-unknown-warning-option $arguments "$file" 2>/dev/null
}
export -f lint_one

if [ $# = 0 ]; then
    mapfile -t files < <(git ls-files 'common/*.cpp' 'JobObjects/*.cpp' 'runtime/*.cpp' 'tools/*.cpp')
else
    files=("$@")
fi
# The interfaces' header is generated.
cmake --build build/windows --target jobobjects_typelib >/dev/null
for i in "${!files[@]}"; do
    printf '%s\0' $((i + 1)) ${#files[@]} "${files[i]}"
done | xargs -0 -n 3 -P "${JOBS:-$(nproc)}" bash -c 'lint_one "$@"' lint
echo "lint: no findings in ${#files[@]} files"
