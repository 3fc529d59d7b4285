#!/usr/bin/env bash
# Follows README.md on a machine with nothing installed: runs its commands in their order and compares their results and
# time with what it promises. Takes the commands, the script, its output, the file names and the time from README.md.
#
#   journey.sh        in the source tree, as root; in a new system: run.sh 12 tests/systems/journey.sh
# shellcheck disable=SC2016 # backticks are those of README.md
set -euo pipefail
cd "$(dirname "$0")/../.."
source scripts/wine-session.sh
work=$PWD/build/journey
mkdir -p "$work"
times=()

fail() {
    echo "journey: $1" >&2
    exit 1
}

clean() {
    remove_wine_prefix "$work/wine"
    rm -f first.vbs release/first.vbs
}
trap clean EXIT

# Lines of the code blocks of a language, without comments.
commands() {
    awk -v start="\`\`\`$1" '$0 == start { inside = 1; next } /^```$/ { inside = 0 } inside' README.md | sed 's/ *#.*//'
}

# Runs the command $1 of README.md, as $2 if it needs something around it, with its output in $work/output.txt.
timed() {
    local start=$SECONDS
    echo "== $1"
    bash -c "${2-$1}" >"$work/output.txt" 2>"$work/errors.txt" </dev/null ||
        { tail -n 40 "$work/output.txt" "$work/errors.txt"; fail "$1 failed"; }
    times+=("$(printf '%6d s  %s' $((SECONDS - start)) "$1")")
}

compare_output() {
    tr -d '\r' <"$work/output.txt" | diff - "$work/README.txt" || fail "the script prints something else"
}

# The names in the first column of the table of dist/, one a line, with the folders that must have them.
delivered_files() {
    awk -F'|' '/^\| In `dist\/`/ { inside = 1; next } !/^\|/ { inside = 0 } inside && !/^\|---/ { print $2 }' README.md |
        while read -r names; do
            folders="dist dist/x64"
            case $names in *'only in `dist/`:'*) folders=dist names=${names#*:} ;; esac
            grep -o '`[^`]*`' <<<"$names" | tr -d '`' | while read -r file; do
                for folder in $folders; do echo "$folder/$file"; done
            done
        done
    grep -o 'JobObjects-[^ `]*\.msi' README.md | sed 's|^|release/|'
}

mapfile -t lines < <(commands sh)
[ ${#lines[@]} -ge 2 ] || fail "README.md has no commands"
for line in "${lines[@]}"; do
    case $line in
    *first.vbs*)
        python3 tests/reference/readme_sample.py "$work"
        cp "$work/README.vbs" first.vbs
        timed "$line"
        compare_output
        ;;
    *) timed "$line" ;;
    esac
done

mapfile -t files < <(delivered_files)
[ ${#files[@]} -ge 5 ] || fail "README.md lists no files"
for file in "${files[@]}"; do
    [ -e "$file" ] || fail "$file is missing"
done
(cd release && sha256sum --check --strict --quiet SHA256SUMS) || fail "the checksums are wrong"

mapfile -t lines < <(commands bat)
[ ${#lines[@]} -ge 2 ] || fail "README.md has no commands for Windows"
export WINEPREFIX=$work/wine
remove_wine_prefix "$WINEPREFIX"
start_wine "$wine64"
trap clean EXIT # which start_wine replaced
cp first.vbs release
for line in "${lines[@]}"; do
    timed "$line" "cd release && $wine64 $line"
done
compare_output

promised=$(tr '\n' ' ' <README.md | sed -n 's/.* about \([0-9]*\) minutes.*/\1/p')
[ -n "$promised" ] || fail "README.md promises no time"
echo
printf '%s\n' "${times[@]}"
# A busy machine gets three times as long.
[ "$SECONDS" -le $((promised * 180)) ] || fail "$((SECONDS / 60)) minutes instead of $promised"
echo "All ${#times[@]} commands of README.md did what it promises, in $((SECONDS / 60)) minutes."
