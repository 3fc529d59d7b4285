#!/usr/bin/env bash
# shellcheck disable=SC2016 # apt-get replaces $(REPO_URI)
# Runs a command in a new Debian system, with nothing installed and a clone of this repository's HEAD. Needs root and
# debootstrap, and takes the packages from the mirror that this machine uses.
#
#   run.sh 12|13 [command...]       by default: ./build.sh, ./demo.sh and ./test.sh
#
# The system is a chroot in build/systems. A second run installs nothing, but starts from a new clone; remove the folder
# to start from nothing.
set -euo pipefail
release=${1:?usage: run.sh 12|13 [command...]}
shift
declare -A names=([12]=bookworm [13]=trixie)
name=${names[$release]:?no such release}
[ $# -gt 0 ] || set -- bash -c "./build.sh && ./demo.sh && ./test.sh"

source_tree=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
root=$source_tree/build/systems/debian-$release
mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Label: Debian' | sed -n 1p)

if [ ! -e "$root/complete" ]; then
    rm -rf "$root" # an interrupted one
    mkdir -p "$root"
    debootstrap --variant=minbase "$name" "$root" "$mirror"
    printf 'deb %s %s main\n' "$mirror" "$name" "$mirror" "$name-updates" >"$root/etc/apt/sources.list"
    touch "$root/complete"
fi
cp /etc/resolv.conf /etc/hosts "$root/etc"
rm -rf "$root/root/checkout"
git clone --quiet "$source_tree" "$root/root/checkout"
# The scripts of this system end their own Windows processes; name spaces of its own end whatever is left.
unshare --pid --fork --kill-child --mount-proc --root="$root" --wd=/root/checkout "$@"
