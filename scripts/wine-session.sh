# Sourced by scripts that run Windows programs. Keeps Wine running until the script ends, so that each program starts in
# milliseconds. Uses the private prefix WINEPREFIX, by default build/wine.
wine=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)/wine.sh
export WINEPREFIX=${WINEPREFIX:-$(dirname "$wine")/../build/wine} WINEARCH=win32
mkdir -p "$WINEPREFIX"
WINEPREFIX=$(cd "$WINEPREFIX" && pwd)

stop_wine() {
    wineserver -k || true
}

start_wine() {
    stop_wine # left over from an interrupted run
    trap stop_wine EXIT
    if [ ! -e "$WINEPREFIX/complete" ]; then
        "$wine" wineboot -i
        wineserver -w
        touch "$WINEPREFIX/complete"
    fi
    wineserver -p
    # The first program starts Wine's services. They inherit its output and keep it open, so that a reader would wait
    # forever.
    "$wine" cmd /c exit </dev/null >/dev/null 2>&1
}

# The Windows path of the file $1.
windows_path() {
    local path="Z:$1"
    printf '%s' "${path//\//\\}"
}
