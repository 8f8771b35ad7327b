#!/usr/bin/env bash
# Installs what it takes to build, test and format the project, from the packages of Debian or Ubuntu and without a
# question. Quick and silent when nothing is missing.
#
#     scripts/setup.sh [--windows]
#
# With --windows it installs what it takes besides to build for Windows and to run that here: the compiler, Wine, and the
# sources of the test framework.
set -euo pipefail

# What is needed and the package that brings it: a command, or a file below one of the usual folders.
needed="
g++                     g++
gcc                     gcc
cmake                   cmake
ninja                   ninja-build
ccache                  ccache
objdump                 binutils
pkg-config              pkg-config
dpkg-shlibdeps          dpkg-dev
strace                  strace
python3                 python3
gdl                     gnudatalanguage
clang-format            clang-format
doxygen                 doxygen
share/i18n/locales/de_DE  locales
include/gtest/gtest.h   libgtest-dev
include/gmock/gmock.h   libgmock-dev
include/benchmark/benchmark.h  libbenchmark-dev
"
needed_for_windows="
x86_64-w64-mingw32-gcc-posix  gcc-mingw-w64-x86-64-posix
x86_64-w64-mingw32-g++-posix  g++-mingw-w64-x86-64-posix
wine                          wine
lib/wine/wine64               wine64
src/googletest/CMakeLists.txt  googletest
"

# The tools for Windows are large: their progress is shown, so that nobody takes it for a standstill.
quiet=(-qq -o Dpkg::Use-Pty=0)
case ${1:-} in
"") ;;
--windows)
    needed+=$needed_for_windows
    quiet=(-q -o Dpkg::Use-Pty=0)
    ;;
*)
    echo "usage: scripts/setup.sh [--windows]" >&2
    exit 2
    ;;
esac

is_there() {
    case $1 in
    */*) [[ -e /usr/$1 || -e /usr/local/$1 ]] ;;
    *) command -v "$1" >/dev/null ;;
    esac
}

find_missing() {
    missing=()
    local need package
    while read -r need package; do
        [[ -z $need ]] || is_there "$need" || missing+=("$package")
    done <<<"$needed"
}

give_up() {
    echo "setup.sh: $1 Install these packages and start again: ${missing[*]}" >&2
    exit 1
}

apt_get() {
    "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get "${quiet[@]}" -o DPkg::Lock::Timeout=300 "$@" >&2
}

install_missing() {
    apt_get install --yes --no-install-recommends "${missing[@]}"
}

find_missing
((${#missing[@]})) || exit 0

command -v apt-get >/dev/null || give_up "this system has no apt-get."
root=()
if [[ $(id -u) != 0 ]]; then
    command -v sudo >/dev/null || give_up "installing takes root's rights, and there is no sudo."
    root=(sudo)
    [[ -t 0 ]] || root=(sudo -n)
    "${root[@]}" true || give_up "installing takes root's rights, and sudo doesn't give them."
fi

echo "Installing ${missing[*]}" >&2
if [[ ${1:-} == --windows ]]; then
    echo "The tools for Windows take 1.5 GB of disk and, for the first time, some minutes." >&2
fi
# A fresh machine has no lists of packages, and old lists name packages that are gone.
if ! compgen -G '/var/lib/apt/lists/*_Packages*' >/dev/null || ! install_missing; then
    apt_get update || give_up "apt-get update failed."
    install_missing || give_up "apt-get install failed."
fi

hash -r
find_missing
((${#missing[@]} == 0)) || give_up "something is still missing."
