#!/usr/bin/env bash
# Installs on Debian 12 what building, testing and the demo need. Does nothing when all of it is there.
# To be run as root or by a user who may use sudo.
set -euo pipefail

packages=(
    # Product: the compiler, the IDL compiler and the headers that the IDL imports, the build tools.
    g++-mingw-w64-i686-win32 mingw-w64-tools libwine-dev cmake ninja-build
    # The installer and the archives; faketime fixes the clock of tools that write it into their output.
    wixl msitools faketime
    # Native build of the platform-neutral code, and the unit test framework.
    g++ catch2
    # Hosts with the shared runtime of the other thread model.
    g++-mingw-w64-i686-posix
    # 32-bit Wine runs the tests and the demo.
    wine wine64 wine32:i386
    # Free Pascal and its sources, from which the tests build a late-bound Windows client.
    fp-compiler fpc-source
    # The benchmarks compare with it; what else they need they fetch themselves.
    librapidxml-dev
    # Checks of the XML files, of the formatting, of the code and of the generated pages; python3 also runs the
    # packaging scripts.
    libxml2-utils clang-format clang-tidy python3
    # The documentation as a site.
    mkdocs
    # The long checks: fuzzers, sanitizers in 32 bits, coverage.
    clang libclang-rt-dev g++-multilib gcovr
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
    if [ "$system $architecture" != "debian 12 amd64" ]; then
        die "this script knows Debian 12 on amd64, not '$system $architecture'." \
            "Install by hand: ${packages[*]}"
    fi
    if [ "$(id -u)" != 0 ] && ! command -v sudo >/dev/null; then
        die "packages are missing and sudo is not installed: run this script as root once."
    fi
}

# The package lists of the security suite are not always complete for i386. Then its amd64 packages have
# newer versions than the i386 ones, and 32-bit Wine cannot be installed beside them. With these
# preferences the versions come from the release itself, for both architectures alike.
write_preferences() {
    cat >"$1" <<'END'
Package: *
Pin: release l=Debian-Security
Pin-Priority: 100

Package: *
Pin: release n=bookworm,l=Debian
Pin-Priority: 1001
END
}

# Leaves the options that make the packages $@ installable in the array `options`.
choose_options() {
    options=()
    apt_get install --no-install-recommends --simulate "$@" >/dev/null 2>&1 && return
    echo "setup: the latest versions do not fit together; taking the release's own, without security updates" >&2
    write_preferences "$preferences"
    options=(-o "Dir::Etc::Preferences=$preferences" --allow-downgrades)
    apt_get install --no-install-recommends --simulate "${options[@]}" "$@" >/dev/null ||
        die "apt finds no versions of these packages that fit together: $*"
}

install_packages() {
    local attempt
    for attempt in 1 2 3; do
        apt_get install --yes --no-install-recommends "${options[@]}" "$@" && return
        echo "setup: attempt $attempt to install the packages failed" >&2
    done
    die "the packages could not be installed: $*"
}

mapfile -t missing < <(missing_packages)
if [ ${#missing[@]} = 0 ]; then
    echo "setup: everything is installed"
    exit 0
fi

check_system
echo "setup: installing ${missing[*]}"
dpkg --print-foreign-architectures | grep -qx i386 || as_root dpkg --add-architecture i386
apt_get update || echo "setup: some package lists could not be read; going on with the rest" >&2

preferences=$(mktemp)
trap 'rm -f "$preferences"' EXIT
choose_options "${missing[@]}"
install_packages "${missing[@]}"

mapfile -t missing < <(missing_packages)
[ ${#missing[@]} = 0 ] || die "still not installed: ${missing[*]}"
echo "setup: everything is installed"
