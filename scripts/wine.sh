#!/usr/bin/env bash
# Runs a Windows program under Wine, in a Wine folder of the project's own, with nothing that could open a window.
#
#     scripts/wine.sh PROGRAM [ARGUMENT...]
#     scripts/wine.sh --start       makes the Wine folder if it is missing, with a drive V: that is mapped to the share
#                                   \\VODREL-FAR\Data, and keeps Wine's server up for what follows
#     scripts/wine.sh --stop
#
# WINEPREFIX names the folder, build/wine unless given. Programs run without --start too, but each of them then waits
# a second for the server.
set -euo pipefail
project=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
export WINEPREFIX=${WINEPREFIX:-$project/build/wine}
export WINEDEBUG=${WINEDEBUG:--all}
export WINEDLLOVERRIDES="mscoree=;mshtml=;winemenubuilder.exe=;explorer.exe=;winedbg.exe="
export LC_ALL=C.UTF-8 # so that names in arguments are taken for what they are
unset DISPLAY

# The server outlives this script, so it mustn't hold on to anybody's output.
# The first program brings up services, which stay as well and mustn't either.
start_server() {
    wineserver -p </dev/null >/dev/null 2>&1 || true # it is up already
    wine cmd /c exit </dev/null >/dev/null 2>&1
}

# Tests want a drive that is mapped to a share, which Wine takes to be what a link leads to, and a line of the registry
# says. The server asks for it when it starts.
map_drive() {
    local devices=$WINEPREFIX/dosdevices
    mkdir -p "$devices/unc/VODREL-FAR/Data"
    ln -sfn unc/VODREL-FAR/Data "$devices/v:"
    wine reg add 'HKLM\Software\Wine\Drives' /v v: /d network /f </dev/null >/dev/null 2>&1
}

start() {
    mkdir -p "$WINEPREFIX"
    [[ -e $WINEPREFIX/system.reg ]] ||
        echo "Making the Wine folder $WINEPREFIX: 700 MB, some ten seconds ..." >&2
    start_server
    [[ -e $WINEPREFIX/dosdevices/v: ]] && return
    map_drive
    wineserver -k
    wineserver -w
    start_server
}

case ${1:-} in
--start) start ;;
--stop) wineserver -k || true ;;
*) exec wine "$@" ;;
esac
