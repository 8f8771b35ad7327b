#!/usr/bin/env bash
# Tests the example `discharge`: discharge.sh PROGRAM
set -euo pipefail
# shellcheck source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

# ---- A first run, into folders that aren't there yet ----
run "$root$scratch/cwd/a/Bank"
expectstatus 0
expectquiet
expectout '^Stored 8 shots\.$'
expectout '^Shot +Charge voltage +Peak current +Rise 10-90 +Width at half +Charge\^2 / 2 +Peak by theory$'
expectout '^ +ChargeVoltage\*1000 +I\\mx +I\\19 +I\\fh +\(I\\in\)\^2\*0\.5$'
expectout '^ +\[V\] +\[kA\] +\[ms\] +\[ms\] +\[\(As\)\^2\] +\[kA\]$'
expectout '^The last shot sent [0-9.]+ As through the coil\.$'
expectout "^The experiment stays in $root$scratch/cwd/a/Bank\. "
expectsame "$(grep -cE '^A00[1-8] ' "$scratch/out")" 8 "rows of the table"
cp "$scratch/out" "$scratch/first"

# Peaks [kA]: 4.08248 A/V * exp(-25/s * 7.14760 ms) for each volt of the charge.
peaks=(6.83 10.24 13.66 17.07 20.49 23.90 27.32 30.73)
for i in 0 1 2 3 4 5 6 7; do
    shot=a/Bank/Shots/ShotA00$((i + 1))
    expectout "^A00$((i + 1)) +$((2000 + 1000 * i)) +[0-9.]+ +[0-9.]+ +[0-9.]+ +[0-9]+ +${peaks[i]}$"
    expectsame "$(wvf "$shot/I.wvf" header | cut -d' ' -f1-6,9)" "4 0 100000 0 0 9.99999997e-07 400000" "header of $shot/I"
    expectsame "$(wvf "$shot/V.wvf" header | cut -d' ' -f1-6,9)" "4 0 100000 0 0 9.99999997e-07 400000" "header of $shot/V"
    expectline "$shot/Scalars.ini" "[Fields]"
    expectline "$shot/Scalars.ini" "Comment=Computed discharge of a capacitor bank through a coil"
    expectline "$shot/Scalars.ini" "ChargeVoltage=$((2 + i))"
    expectline "$shot/Scalars.ini" "Operator=discharge example"
    grep -qE '^Date=[0-9]{2}/[0-9]{2}/[0-9]{4} [0-9]{2}:[0-9]{2}:[0-9]{2}' "$shot/Scalars.ini" || fail "no date in $shot"
    expectline a/Bank/Shots/ScalarCache.ini "[ShotA00$((i + 1))]"
done
expectsame "$(ls a/Bank/Shots)" "$(printf 'ScalarCache.ini\n'; printf 'ShotA%03d\n' 1 2 3 4 5 6 7 8)" "the shots"
row() { grep "^A00$1 " "$scratch/out"; }
python3 "$here/discharge.py" a/Bank/Shots/ShotA00{1/V,1/I}.wvf 2000 "$(row 1)" || fail "A001 isn't the discharge of 2 kV"
python3 "$here/discharge.py" a/Bank/Shots/ShotA00{8/V,8/I}.wvf 9000 "$(row 8)" "$(grep '^The last' "$scratch/out")" ||
    fail "A008 isn't the discharge of 9 kV"

# ---- A second run takes its own shots again ----
sums() { for f in a/Bank/Shots/*/*.wvf; do tail -c 400000 "$f" | md5sum; done; }
before=$(sums)
run a/Bank/
expectstatus 0
expectquiet
expectout '^Stored 8 shots; 8 of them stood there from an earlier run'
expectsame "$(sums)" "$before" "samples of the second run"
expectsame "$(grep '^A0' "$scratch/out")" "$(grep '^A0' "$scratch/first")" "table of the second run"

# ---- Relative names, and shots that the experiment's settings put elsewhere ----
mkdir -p 'c/d/Old Bank' c/d/Store
printf '[Groups]\r\n..\\Store;;Store\r\n[ShotCreation]\r\n*=..\\Store\r\n' >'c/d/Old Bank/Old Bank.ini'
run 'c/d/Old Bank/'
expectstatus 0
expectfile c/d/Store/ShotA008/I.wvf
run e
expectstatus 0
expectfile e/Shots/ShotA008/I.wvf

# ---- What doesn't come from this program stays ----
mkdir -p b/Bank/Shots/ShotA003
run b/Bank
expectstatus 1
expecterr "A003 isn't a shot of this program"
expectsame "$(ls b/Bank/Shots/ShotA003)" "" "the other's shot"
expectfile b/Bank/Shots/ShotA002/I.wvf

sed -i 's/^Comment=.*/Comment=mine/' a/Bank/Shots/ShotA001/Scalars.ini
printf kept >a/Bank/Shots/ShotA001/I.wvf
run a/Bank
expectstatus 1
expecterr "A001 isn't a shot of this program"
expectsame "$(cat a/Bank/Shots/ShotA001/I.wvf)" kept "the other's waveform"

# ---- Where nothing can be stored ----
echo "in the way" >file
run file/Bank
expectstatus 1
expecterr "A001 could not be stored"
runlimited 100 full/Bank
expectstatus 1
expecterr "A001 is cut off: is the disk full?"
for name in "" . .. / a/.. 'a/b*' 'a/b?' Z:; do
    run "$name"
    expectstatus 1
    expecterr "can't name an experiment"
done
run "$(printf 'x%.0s' {1..2000})"
expectstatus 1
expecterr "too long a name"
expectsame "$(ls)" "$(printf 'a\nb\nc\ne\nfile\nfull')" "what lies beside the experiments"

# ---- Wrong use ----
run
expectstatus 2
expecterr "usage: discharge FOLDER"
run a b
expectstatus 2

finish
