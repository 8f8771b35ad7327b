#!/usr/bin/env bash
# Builds the library and two examples, and runs them: `discharge`, eight shots of a capacitor bank, computed, stored, read
# back and put into a table, and `derived`, which adds to the same experiment what can be derived from them.
#
#     scripts/demo.sh [FOLDER]
#
# FOLDER is the experiment that it makes, build/demo/Discharge unless given. It stays, for you to look into. The
# library's per-user files go to build/demo/user, so that your own stay as they are.
set -euo pipefail
project=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
folder=${1:-$project/build/demo/Discharge}
[[ $folder == /* ]] || folder=$PWD/$folder
cd "$project"

scripts/setup.sh
mkdir -p build/demo/user
log=build/demo/build.log
echo "Building the library and the examples ..."
if ! scripts/build.sh release --target discharge derived >"$log" 2>&1; then
    cat "$log" >&2
    exit 1
fi
export XDG_DATA_HOME=$project/build/demo/user
build/release/examples/discharge "$folder"
build/release/examples/derived "$folder"
