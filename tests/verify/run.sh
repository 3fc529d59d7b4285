#!/usr/bin/env bash
# Runs the whole verification kit from its archive alone, in new Wine prefixes of 32 and of 64 bits. Needs the archive:
# the builds of the presets windows and windows-64.
set -euo pipefail
cd "$(dirname "$0")/../.."

archive=$(echo build/windows-64/tests/verify/release/*.zip)
for arch in win32 win64; do
    echo "== $arch"
    WINEARCH=$arch tests/support/in_new_prefix.sh "$PWD/build/verify-$arch.wine" tests/package/verification_kit_test.py \
        "$archive"
done
