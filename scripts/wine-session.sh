# To be sourced by scripts that run Windows programs: keeps Wine running for the length of the script, so
# that each program starts in milliseconds. The private prefix is WINEPREFIX, by default build/wine.
wine=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)/wine.sh
export WINEPREFIX=${WINEPREFIX:-$(dirname "$wine")/../build/wine} WINEARCH=win32
mkdir -p "$WINEPREFIX"
WINEPREFIX=$(cd "$WINEPREFIX" && pwd)

stop_wine() {
    wineserver -k || true
}

start_wine() {
    stop_wine # left over from a run that was interrupted
    trap stop_wine EXIT
    if [ ! -e "$WINEPREFIX/complete" ]; then
        "$wine" wineboot -i
        wineserver -w
        touch "$WINEPREFIX/complete"
    fi
    wineserver -p
    # The first program starts Wine's services, which live on and would keep that program's output open:
    # whoever reads it to its end would wait for ever.
    "$wine" cmd /c exit </dev/null >/dev/null 2>&1
}

# The path by which Windows programs know the file $1.
windows_path() {
    local path="Z:$1"
    printf '%s' "${path//\//\\}"
}
