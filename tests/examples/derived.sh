#!/usr/bin/env bash
# Tests the example `derived` over an experiment that `discharge` makes: derived.sh PROGRAM DISCHARGE
set -euo pipefail
# shellcheck source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
discharge=$(realpath -- "${2:?usage: derived.sh PROGRAM DISCHARGE}")
"$discharge" Bank >discharged

# ---- A first run and a second, which begins its table of electrons anew ----
for attempt in first second; do
    run Bank
    expectstatus 0
    expectquiet
    expectsame "$(grep -cE '^A00[1-8] ' "$scratch/out")" 8 "rows of the table, $attempt run"
    expectout '^Shot +Peak +at +Rise 10-90 +Width at half +Integral +Field$'
    expectout '^ +\[kA\] +\[ms\] +\[ms\] +\[ms\] +\[As\] +\[T\]$'
    expectout '^  Tracers.dpt +96 electrons, 12 of each shot$'
    # 48 bytes of fixed fields, 64 of extremes, three texts with their lengths, 96 rows of 32 bytes.
    expectsame "$(stat -c %s Bank/Tracers.dpt)" $((48 + 64 + 12 + 57 + 19 + 96 * 32)) "bytes of Tracers.dpt, $attempt run"
    # 3 * 4 of header, 2 * 12 of axes, 9 * 4 of numbers, three texts with their lengths, 19 * 41 values.
    expectsame "$(stat -c %s Bank/Shots/ShotA008/B.dmt)" $((12 + 24 + 36 + 12 + 1 + 38 + 19 + 19 * 41 * 4)) "bytes of B.dmt"
done

# ---- The numbers are those of the samples, worked out by themselves ----
for i in 1 8; do
    python3 "$here/derived.py" "Bank/Shots/ShotA00$i/I.wvf" "$(grep "^A00$i " "$scratch/out")" || fail "the row of A00$i"
done
python3 "$here/derived.py" Bank/Shots/ShotA008/I.wvf "$(grep '^A008 ' "$scratch/out")" "$(tail -n 1 "$scratch/out")" ||
    fail "the label at the end"

# ---- Without the shots, and wrong use ----
run nothing
expectstatus 1
expecterr "shot A001: it isn't there"
run
expectstatus 2
expecterr "usage: derived FOLDER"

finish
