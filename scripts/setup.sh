#!/usr/bin/env bash
# Installs the packages for building, testing and the demo on Debian 12 or 13, as root or with sudo. Does nothing if all
# are installed.
set -euo pipefail

packages=(
    # Product: compiler, IDL compiler, headers that the IDL imports, build tools.
    g++-mingw-w64-i686-win32 g++-mingw-w64-x86-64-win32 mingw-w64-tools libwine-dev cmake ninja-build
    # Packages and their signatures; faketime fixes the clock for tools that write the time into their output.
    wixl msitools faketime osslsigncode
    # Native build of the platform-neutral code; unit test framework.
    g++ catch2
    # Test hosts with the shared runtime of the posix thread model.
    g++-mingw-w64-i686-posix g++-mingw-w64-x86-64-posix
    # Tests and demo run under Wine.
    wine wine64 wine32:i386
    # The tests build a late-bound Windows client from Free Pascal's sources.
    fp-compiler fpc-source
    # The tests compile the .NET interfaces, and make certificates to sign with.
    mono-mcs openssl
    # Peer of the benchmarks; bench/fetch_peers.sh fetches the other peers.
    librapidxml-dev
    # Checks of XML files, formatting, code and generated pages; python3 also runs the packaging scripts.
    libxml2-utils clang-format-19 clang-tidy python3
    # Documentation site; a browser for its test and that of the report, with a font.
    mkdocs mkdocs-material chromium fonts-dejavu-core
    # Databases of the tests.
    sqlite3 postgresql
    # Long checks: fuzzers, 32-bit sanitizers, coverage, coverage of conditions.
    g++-multilib gcovr clang-19 llvm-19 libclang-rt-19-dev
)

die() {
    echo "setup: $*" >&2
    exit 1
}

missing_packages() {
    local package
    for package in "${packages[@]}"; do
        dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q '^install ok installed' || echo "$package"
    done
}

as_root() {
    if [ "$(id -u)" = 0 ]; then
        "$@"
    else
        sudo "$@"
    fi
}

apt_get() {
    as_root env DEBIAN_FRONTEND=noninteractive apt-get -o Acquire::Retries=5 -o DPkg::Lock::Timeout=300 "$@"
}

check_system() {
    local system architecture
    system=$(. /etc/os-release && echo "$ID ${VERSION_ID:-}")
    architecture=$(dpkg --print-architecture 2>/dev/null || echo unknown)
    if [[ "$system $architecture" != "debian "1[23]" amd64" ]]; then
        die "this script supports Debian 12 and 13 on amd64 only, not '$system $architecture'." \
            "Install by hand: ${packages[*]}"
    fi
    if [ "$(id -u)" != 0 ] && ! command -v sudo >/dev/null; then
        die "packages are missing and sudo is not installed: run this script once as root."
    fi
}

# The security suite sometimes lacks i386 packages. Its amd64 packages are then newer than the i386 ones, and 32-bit
# Wine cannot be installed. These preferences take both architectures from the release itself.
write_preferences() {
    cat >"$1" <<END
Package: *
Pin: release l=Debian-Security
Pin-Priority: 100

Package: *
Pin: release n=$(. /etc/os-release && echo "$VERSION_CODENAME"),l=Debian
Pin-Priority: 1001
END
}

# Sets the array `options` to the apt options that make the packages $@ installable.
choose_options() {
    options=()
    apt_get install --no-install-recommends --simulate "$@" >/dev/null 2>&1 && return
    echo "setup: the latest versions conflict; using the release's versions, without security updates" >&2
    write_preferences "$preferences"
    options=(-o "Dir::Etc::Preferences=$preferences" --allow-downgrades)
    apt_get install --no-install-recommends --simulate "${options[@]}" "$@" >/dev/null ||
        die "apt finds no compatible versions of these packages: $*"
}

install_packages() {
    local attempt
    for attempt in 1 2 3; do
        apt_get install --yes --no-install-recommends "${options[@]}" "$@" && return
        echo "setup: attempt $attempt to install the packages failed" >&2
    done
    die "the packages could not be installed: $*"
}

# Debian 13 has Catch2 3, whose sources are compiled for each target. Only the source package has them.
catch2_sources=/usr/src/catch2

misses_catch2_sources() {
    [ ! -e /usr/include/catch2/catch.hpp ] && [ ! -e "$catch2_sources/catch_amalgamated.cpp" ]
}

install_catch2_sources() {
    local folder
    folder=$(mktemp -d)
    mkdir -p "$folder/lists/partial"
    apt-get indextargets --format 'deb-src $(REPO_URI) $(CODENAME) $(COMPONENT)' 'Label: Debian' 'Component: main' |
        sort -u >"$folder/sources.list"
    (
        cd "$folder"
        chmod 755 .
        options=(-o "Dir::Etc::SourceList=$folder/sources.list" -o Dir::Etc::SourceParts=-
            -o "Dir::State::Lists=$folder/lists")
        apt_get "${options[@]}" update
        apt_get "${options[@]}" source --download-only catch2
        as_root mkdir -p "$catch2_sources"
        as_root tar -xf catch2_*.orig.tar.* --directory "$catch2_sources" --strip-components 2 --wildcards \
            '*/extras/catch_amalgamated.*'
    )
    rm -rf "$folder"
    ! misses_catch2_sources || die "the sources of Catch2 could not be installed"
}

install_missing_packages() {
    check_system
    echo "setup: installing ${missing[*]}"
    dpkg --print-foreign-architectures | grep -qx i386 || as_root dpkg --add-architecture i386
    apt_get update || echo "setup: cannot read some package lists; continuing without them" >&2

    preferences=$(mktemp)
    trap 'rm -f "$preferences"' EXIT
    choose_options "${missing[@]}"
    install_packages "${missing[@]}"

    mapfile -t missing < <(missing_packages)
    [ ${#missing[@]} = 0 ] || die "still not installed: ${missing[*]}"
}

mapfile -t missing < <(missing_packages)
[ ${#missing[@]} = 0 ] || install_missing_packages
! misses_catch2_sources || install_catch2_sources
echo "setup: everything is installed"
