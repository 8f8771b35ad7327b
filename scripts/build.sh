#!/usr/bin/env bash
# Configures and builds one preset, through the compiler cache if there is one.
#
#     scripts/build.sh PRESET [ARGUMENT...]
#
# Further arguments go to `cmake --build`.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
preset=${1:?usage: scripts/build.sh PRESET [ARGUMENT...]}
shift

if command -v ccache >/dev/null; then
    export CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache
    # Without these it doesn't keep what is compiled with headers that are compiled ahead.
    export CCACHE_SLOPPINESS=pch_defines,time_macros
fi
cmake --preset "$preset"
cmake --build --preset "$preset" --parallel "$(nproc)" "$@"
