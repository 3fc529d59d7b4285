#!/usr/bin/env bash
# Runs installer_test.py in a new Wine prefix of WINEARCH (wine.sh):
#
#   installer_test.sh <prefix> <platform> <JobObjects.idl> <installed files> <older.msi> <newer version>
#       <registration-free.zip> <client.exe>
#
# Makes the newer installer itself, with the same files.
set -euo pipefail

prefix=$1
platform=$2
idl=$3
files=$4
older=$5
version=$6
shift 6
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
newer=$prefix.newer.msi
python3 -B "$here/../../packaging/make_installer.py" "$idl" "$version" "$platform" "$files" "$newer"
"$here/../support/in_new_prefix.sh" "$prefix" "$here/installer_test.py" "$platform" "$older" "$newer" "$version" "$@"
