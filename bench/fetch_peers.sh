#!/bin/sh
# Fetches Google Benchmark and pugixml from Debian's source packages into the given folder. Copies the machine's apt
# sources and keeps separate package lists, so it needs no root and changes no system configuration.
set -eu
folder=$1
mkdir -p "$folder/lists/partial" "$folder/cache/archives/partial" "$folder/sources"
cd "$folder"
[ -f pugixml/src/pugixml.cpp ] && [ -f benchmark/src/benchmark.cc ] && exit 0
for file in /etc/apt/sources.list /etc/apt/sources.list.d/*; do
    case $file in
    *.list) if [ -f "$file" ]; then sed -n 's/^deb /deb-src /p' "$file"; fi >"sources/$(basename "$file")" ;;
    *.sources) sed 's/^Types:.*/Types: deb-src/' "$file" >"sources/$(basename "$file")" ;;
    esac
done
options="-o Dir::Etc::sourcelist=- -o Dir::Etc::sourceparts=$folder/sources -o Dir::State::lists=$folder/lists
    -o Dir::Cache=$folder/cache -o APT::Sandbox::User="
apt-get $options -qq update
apt-get $options -qq source --download-only pugixml benchmark
for name in pugixml benchmark; do
    mkdir -p $name
    tar -xf "${name}"_*.orig.tar.* -C $name --strip-components=1
done
