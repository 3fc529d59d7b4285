#!/usr/bin/env bash
# Builds every package into release/: installers, registration-free files, tools, symbols and bills of materials for
# 32-bit and 64-bit Windows, the client kit, the verification kit, and checksums (docs/packaging.md).
#
#   ./package.sh [--certificate FILE.p12 [--password-file FILE] [--timestamp URL]]
#
# With a certificate, signs libraries, tools and installers. Asks for its password unless it is in a file.
# JOBS sets the number of parallel compilers, SOURCE_DATE_EPOCH the date of the files (default: the last commit's).
set -euo pipefail

usage() {
    sed -n 's/^#   //p' "$0" >&2
    exit 2
}

sign=()
while [ $# -gt 0 ]; do
    [ $# -gt 1 ] || usage
    case $1 in
    --certificate) sign=("$(realpath -e "$2")" "${sign[@]}") ;;
    --password-file) sign+=("$1" "$(realpath -e "$2")") ;;
    --timestamp) sign+=("$1" "$2") ;;
    *) usage ;;
    esac
    shift 2
done
case ${sign[0]-} in --*) usage ;; esac
cd "$(dirname "$0")"

if [ -n "$(git status --porcelain 2>/dev/null)" ]; then
    echo "package: uncommitted changes: nobody else can reproduce this package" >&2
fi
scripts/setup.sh
rm -rf release
mkdir release
for preset in windows windows-64; do
    cmake --preset "$preset"
    # A changed SOURCE_DATE_EPOCH does not trigger a rebuild.
    folder=build/$preset/packaging
    rm -rf "$folder"/release "$folder"/*.msi "$folder"/*.spdx.json build/$preset/tests/verify/release
    cmake --build --preset "$preset" --target release verification_kit --parallel "${JOBS:-$(nproc)}"
    cat "$folder/release/SHA256SUMS" >>release/SHA256SUMS
    find "$folder/release" -type f ! -name SHA256SUMS -exec cp {} release \;
done
# The 64-bit build packs the kit of both.
cat build/windows-64/tests/verify/release/SHA256SUMS >>release/SHA256SUMS
cp build/windows-64/tests/verify/release/*.zip release
[ ${#sign[@]} = 0 ] || packaging/sign_release.py release "${sign[@]}"
(cd release && sha256sum --check --strict SHA256SUMS)
echo
echo "Files in release/:"
ls -l release
