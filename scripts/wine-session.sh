# Sourced by scripts that run Windows programs. Keeps Wine running until the script ends, so that each program starts in
# milliseconds.
#
#   start_wine                        for the programs of the preset PRESET, windows or windows-64, which "$wine" runs
#   start_wine "$wine32" "$wine64"    for both
wine32=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)/wine.sh
wine64=${wine32%.sh}64.sh
preset=${PRESET:-windows}
if [ "$preset" = windows-64 ]; then wine=$wine64; else wine=$wine32; fi
wine_prefixes=()

stop_wine() {
    local prefix
    for prefix in "${wine_prefixes[@]}"; do
        [ ! -d "$prefix" ] || WINEPREFIX=$prefix wineserver -k || true
    done
}

start_wine() {
    local emulator prefix
    trap stop_wine EXIT
    for emulator in "${@:-$wine}"; do
        prefix=$("$emulator" --prefix)
        wine_prefixes+=("$prefix")
        WINEPREFIX=$prefix wineserver -k || true # left over from an interrupted run
        if [ ! -e "$prefix/complete" ]; then
            "$emulator" wineboot -i
            WINEPREFIX=$prefix wineserver -w
            touch "$prefix/complete"
        fi
        WINEPREFIX=$prefix wineserver -p
        # The first program starts Wine's services. They inherit its output and keep it open, so that a reader would
        # wait forever.
        "$emulator" cmd /c exit </dev/null >/dev/null 2>&1
    done
}

# Stops and removes the prefix $1, for a script that needs a new one. A 64-bit prefix takes 1.3 GB.
remove_wine_prefix() {
    WINEPREFIX=$1 wineserver -k >/dev/null 2>&1 || true # left over from an interrupted run
    rm -rf "$1"
}

# The Windows path of the file $1.
windows_path() {
    local path="Z:$1"
    printf '%s' "${path//\//\\}"
}
