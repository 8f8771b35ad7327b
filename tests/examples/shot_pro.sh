#!/usr/bin/env bash
# Tests the example `shot.pro` with GNU Data Language: shot_pro.sh LIBRARY
set -euo pipefail
# shellcheck source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
library=$program
project=$(cd "$here/../.." && pwd)

# The interpreter knows nothing of sanitizers: with their runtime loaded ahead of it, it hangs in its start-up. So the
# runtime comes in with the library and leaves the heap to the interpreter; that still has all of the library's own
# checks, but for those of blocks on the heap.
# interpret FOLDER SCRIPT: runs a script of the project on an experiment, and keeps its status, output and errors, but
# for those about the missing display.
interpret() {
    status=0
    (cd "$project" && env -u DISPLAY XDG_CACHE_HOME="$scratch/cache" VODREL_LIBRARY="$library" VODREL_FOLDER="$1" \
        ASAN_OPTIONS=detect_leaks=0:verify_asan_link_order=0 timeout 60 gdl -quiet "$2" </dev/null) \
        >"$scratch/out" 2>"$scratch/all" || status=$?
    grep -vE 'DISPLAY|wxWidgets' "$scratch/all" >"$scratch/err" || true
}

# ---- The example, twice over the same shot ----
for pass in first second; do
    interpret "$PWD/E" examples/shot.pro
    expectstatus 0
    expectquiet
    expectout "^Experiment $PWD/E, shot A001$"
    python3 "$here/shot_pro.py" "$scratch/out" E/Shots/ShotA001/U.wvf || fail "the $pass run isn't as computed here"
done
expectsame "$(find E -type f | LC_ALL=C sort | tr '\n' ' ')" \
    "E/E.ini E/Shots/ScalarCache.ini E/Shots/ShotA001/Scalars.ini E/Shots/ShotA001/U.wvf " "files of the experiment"
expectline E/Shots/ShotA001/Scalars.ini "ChargeVoltage=1.5"
expectline E/Shots/ScalarCache.ini "ChargeVoltage=1.5"
grep -qE '^Date=[0-9]{2}/[0-9]{2}/[0-9]{4} [0-9:]{8}' E/Shots/ShotA001/Scalars.ini || fail "the shot has no date"
grep -qE '^Initialized by IDL at ' "$XDG_DATA_HOME/Vodrel/Log.txt" || fail "no line about the start in the log"
expectsame "$(grep -c '^Log initialized' "$XDG_DATA_HOME/Vodrel/Log.txt")" 1 "starts in the log"

# ---- It says so when something goes wrong ----
echo "in the way" >file
interpret "$PWD/file/E" examples/shot.pro
expectstatus 1
expectout '^Only [0-9] of 10 steps went well\.$'
library=$scratch/nothing.so interpret "$PWD/F" examples/shot.pro
expectstatus 1
expectout "^No library $scratch/nothing\.so$"
expectnothing F

# ---- What the functions answer where they fail ----
interpret "$PWD/G" tests/examples/shot_failures.pro
expectstatus 17
expectquiet
created='Error creating shot (most likely it already exists and name did not have *)'
set='Error setting shot (most likely it does not exist)'
missing='Error reading waveform info for None (most likely it does not exist)'
expectsame "$(tr -s ' ' <"$scratch/out")" "$created
$set
no experiment 0 -1 -1
start 0
$created
create 0 -1 0
$set
$set
set -1 -1
missing waveform
$missing
status -1, samples written 0
$missing
status -1, info 0 0.0 1.0
numbers 0 2.00 2.50 3.00
wrong -1
wrong -1
wrong -1
wrong -1 5.00000
wrong -1
wrong -1 5.00000
wrong -1 5.00000
wrong -1
Expression cannot be evaluated because of unmatched parenthesis
scalars 0 7.0 -3.30E+38" "what failing calls print"
expectsame "$(ls G/Shots)" "$(printf 'ScalarCache.ini\nShotA1')" "shots of failing calls"
expectsame "$(ls G/Shots/ShotA1)" "$(printf 'Scalars.ini\nW.wvf')" "files of failing calls"

finish
