#!/usr/bin/env bash
# Makes the packages: two for Debian, the library and what it takes to develop with it, and with --windows also an
# archive for Windows, with the library, all that developers need and the examples as programs.
#
#     scripts/package.sh [--windows] [FOLDER]
#
# They go to FOLDER, build/packages unless given. What is compiled for them stays in FOLDER/build.
set -euo pipefail
usage() {
    echo "usage: scripts/package.sh [--windows] [FOLDER]" >&2
    exit 2
}

project=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
setup=()
if [[ ${1:-} == --windows ]]; then
    setup=(--windows)
    shift
fi
if (($# > 1)) || [[ ${1:-} == -* ]]; then usage; fi
folder=${1:-$project/build/packages}
[[ $folder == /* ]] || folder=$PWD/$folder
cd "$project"

scripts/setup.sh "${setup[@]}"
if command -v ccache >/dev/null; then
    export CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache
fi

# make_packages SYSTEM PATTERN OPTION...: what is named like the pattern is made anew.
make_packages() {
    local build=$folder/build/$1 pattern=$2
    shift 2
    # The options of the presets, which have it compiled already, if the compiler's cache still knows it.
    cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DVODREL_WARNINGS_AS_ERRORS=ON \
        -DVODREL_BUILD_TESTS=OFF -DVODREL_BUILD_BENCHMARKS=OFF "$@"
    cmake --build "$build" --parallel "$(nproc)"
    find "$folder" -maxdepth 1 -name "$pattern" -delete
    (cd "$build" && cpack -B "$folder")
    rm -rf "$folder/_CPack_Packages"
}

# Below /usr a library lies where Debian wants it.
make_packages linux 'libvodrelcore*.deb' -DCMAKE_INSTALL_PREFIX=/usr \
    -DCMAKE_INSTALL_DOCDIR=share/doc/libvodrelcore-dev
if ((${#setup[@]})); then
    make_packages windows 'VodrelCore-*.zip' "-DCMAKE_TOOLCHAIN_FILE=$project/cmake/mingw.cmake"
fi
find "$folder" -maxdepth 1 -name '*.deb' -o -maxdepth 1 -name '*.zip' | sort
