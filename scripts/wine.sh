#!/usr/bin/env bash
# Runs a Windows program under Wine, in a Wine folder of the project's own, with nothing that could open a window.
#
#     scripts/wine.sh PROGRAM [ARGUMENT...]
#
# WINEPREFIX names the folder, build/wine unless given.
set -euo pipefail
project=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
export WINEPREFIX=${WINEPREFIX:-$project/build/wine}
export WINEDEBUG=${WINEDEBUG:--all}
export WINEDLLOVERRIDES="mscoree=;mshtml=;winemenubuilder.exe="
unset DISPLAY
exec wine "$@"
