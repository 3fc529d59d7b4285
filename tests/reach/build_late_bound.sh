#!/usr/bin/env bash
# Builds the Free Pascal client:
#
#   build_late_bound.sh <late_bound.pas> <late_bound.exe>
#
# Debian packages only a native Free Pascal, but also its sources. The script first builds from them the compiler for
# 32-bit Windows and the units that the client uses: half a minute, once per output folder.
set -euo pipefail

program=$(realpath "$1")
executable=$(realpath "$2")
folder=$executable.build
version=$(fpc -iV)
sources=/usr/share/fpcsrc/$version
compiler=$folder/ppcross386
units=$folder/units
mkdir -p "$units" "$folder/host"

# The compiler's messages are compiled into it.
build_compiler() {
    fpc -FU"$folder/host" -o"$folder/msg2inc" "$sources/compiler/utils/msg2inc.pp"
    (cd "$folder" && ./msg2inc /usr/lib/*-linux-gnu/fpc/"$version"/msg/errore.msg msg msg)
    (cd "$sources/compiler" &&
        fpc -O1 -di386 -Fui386 -Fusystems -Fux86 -Fii386 -Fix86 -Fi"$folder" -FU"$folder/host" \
            -o"$folder/ppcross386.new" pp.pas)
    mv "$folder/ppcross386.new" "$compiler"
}

compile() {
    local rtl=$sources/rtl packages=$sources/packages option
    local options=(-n -Pi386 -Twin32 -O2 -FU"$units" -Fu"$units")
    for option in "$rtl"/{win,inc,objpas,i386,win32} \
        "$packages"/{winunits-base/src,rtl-objpas/src/{inc,win,common},fcl-registry/src,fcl-base/src}; do
        options+=(-Fu"$option")
    done
    for option in "$rtl"/{inc,i386,win,win/wininc,objpas,objpas/sysutils,objpas/classes} \
        "$packages"/{winunits-base/src,rtl-objpas/src/inc,fcl-registry/src}; do
        options+=(-Fi"$option")
    done
    "$compiler" "${options[@]}" "$@"
}

# On failure, prints the errors from the compilers' long output.
report() {
    [ $? = 0 ] || { grep -iE 'error|fatal|cannot|no such' "$folder/log.txt" || tail "$folder/log.txt"; } >&3
}
exec 3>&2 >"$folder/log.txt" 2>&1
trap report EXIT

[ -x "$compiler" ] || build_compiler
cd "$sources/rtl/win32"
[ -e "$units/system.ppu" ] || compile -Us -Sg system.pp
[ -e "$units/sysinitpas.ppu" ] || compile sysinitpas.pp
compile -o"$executable" "$program"
