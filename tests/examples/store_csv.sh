#!/usr/bin/env bash
# Tests the example `store_csv`: store_csv.sh PROGRAM
# shellcheck disable=SC2059 # texts with escapes are what printf is given here
set -euo pipefail
# shellcheck source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

shots=E/Shots
next=0

# Runs the program on files, into a new shot of the experiment E, whose folder is then $shot.
store() {
    next=$((next + 1))
    shot=$shots/ShotS$next
    run E "S$next" "$@"
}

# stored FILE...: they are stored, and the shot says that it is whole.
stored() {
    store "$@"
    expectstatus 0
    expectquiet
    expectline "$shot/Scalars.ini" "Comment=Measured files: stored by store_csv"
}

# refused MESSAGE FILE...: the message comes, and there is no shot.
refused() {
    local message=$1
    shift
    store "$@"
    expectstatus 1
    expecterr "$message"
    expectnothing "$shot"
}

# expectwave NAME COUNT START STEP SAMPLES: a waveform of the last shot.
expectwave() {
    local header
    header=$(wvf "$shot/$1.wvf" header)
    expectsame "$(cut -d' ' -f1-6,9 <<<"$header")" "4 0 $2 $3 0 $4 $((4 * $2))" "header of $shot/$1"
    expectsame "$(wvf "$shot/$1.wvf" samples | tr '\n' ' ')" "$5 " "samples of $shot/$1"
}

# ---- A bad file comes before anything is made ----
printf '0,1\n1,x\n' >bad.csv
printf '0,1\n1,2\n' >good.csv
refused 'bad.csv:2: "x" is not a number' good.csv bad.csv
expectnothing E
expectnothing "$XDG_DATA_HOME/Vodrel"

# The library waits a while for somebody to fill an empty settings file; this one saves the wait in all runs below.
mkdir E
printf '[General]\nDescription=Files of a test\n' >E/E.ini

# ---- Two columns ----
printf '0,1.5\n0.25,-2\n0.5,3e2\n' >plain.csv
stored plain.csv
expectwave plain 3 0 0.25 "1.5 -2 300"
expectout '^plain: 3 samples from 0 s in steps of 0\.25 s$'
expectsame "$(wvf "$shot/plain.wvf" header | cut -d' ' -f7,8)" "300 -2" "extremes of plain"
grep -qE '^Date=[0-9/]{10} ' "$shot/Scalars.ini" || fail "the shot has no date"

# The same samples, written in other ways.
alike() {
    printf -- "$2" >"$1.csv"
    stored "$1.csv"
    expectwave "$1" 3 -1 0.5 "1.5 -2 300"
}
alike crlf '-1,1.5\r\n-.5,-2\r\n0,300\r\n'
alike noend '-1,1.5\n-.5,-2\n0,300'
alike blanks '  -1 ,\t1.5 \n -0.5,  -2\n0,  +300  \n'
alike exponents '-10.0E-1,15e-1\n-5e-1,-0.2e+1\n0e0,3.0E2\n'
alike emptylines '-1,1.5\n-.5,-2\n0,300\n\n \n\r\n,\n'
alike trailingcomma '-1,1.5,\n-.5,-2,\n0,300,\n'
alike mark '\xef\xbb\xbf-1,1.5\n-.5,-2\n0,300\n'
alike semicolons '-1;1.5\n-.5;-2\n0;300\n'
alike tabs '-1\t1.5\n-.5\t-2\n0\t300\n'
alike headings '\xef\xbb\xbf# a run\n\nInstrument,Model 7\nRate,2\nTime [s],U [V]\nnan,inf\n-1,1.5\n-.5,-2\n0,300\n'

# Lines of any length, and more than one block of the file.
python3 - >long.csv <<'PY'
print("heading " * 50000)
for i in range(20000):
    print("%s%.6f,%s%d.%s" % (" " * (100000 if i == 7 else 0), i * 1e-3, " " * (i % 9), i % 100, "0" * (i % 300)))
PY
stored long.csv
expectsame "$(wvf "$shot/long.wvf" header | cut -d' ' -f1-6,9)" "4 0 20000 0 0 0.00100000005 80000" "header of long"
expectsame "$(wvf "$shot/long.wvf" samples | md5sum)" "$(for i in {0..19999}; do echo $((i % 100)); done | md5sum)" "samples of long"

# The span comes from the first and the last time; times with few digits in between are taken.
printf '0.0,1\n0.0,2\n0.1,3\n0.2,4\n0.2,5\n' >coarse.csv
stored coarse.csv
expectwave coarse 5 0 0.0500000007 "1 2 3 4 5"

# ---- Five columns ----
printf '%s\r\n' 'Record Length,3,,   0.000,   1.5,' 'Trigger Point,,, 0.004,-2,' ',,,0.008, 3.00e2,' >five.CSV
stored five.CSV
expectwave five 3 0 0.00400000019 "1.5 -2 300"
expectline "$shot/Scalars.ini" "Record Length=3"
expectnoline "$shot/Scalars.ini" "^Trigger"

# Headings above, settings that go on below the samples, a comma fewer at the end, semicolons.
printf '%s\n' 'Model,M 7' 'Serial , 12;5 ,,,' 'Name,Value,,Time,Volt' 'Unit,V,,0,1' 'Source,CH1,,1,2' ',,,2,3' 'Probe,10' \
    'Note, a = b ,,' >five2.csv
stored five2.csv
expectwave five2 3 0 1 "1 2 3"
for line in 'Model=M 7' 'Serial=12;5' 'Unit=V' 'Source=CH1' 'Probe=10' 'Note=a = b'; do
    expectline "$shot/Scalars.ini" "$line"
done
expectnoline "$shot/Scalars.ini" '^Name='
printf 'Unit;V;;0;1\n;;;1;2\n' >five3.csv
stored five3.csv
expectwave five3 2 0 1 "1 2"
expectline "$shot/Scalars.ini" "Unit=V"

# Names of settings that the shot needs itself, or that a string can't have; the first of two counts.
printf '%s\n' 'Date,1.1.,,0,1' 'comment,mine,,1,2' 'SHOT,7,,2,3' '[a]::b=c;,8,,3,4' ';x,9,,4,5' 'Twice,1,,5,6' 'TWICE,2,,6,7' >own.csv
stored own.csv
for line in 'own Date=1.1.' 'own comment=mine' 'own SHOT=7' '_a___b_c_=8' '_x=9' 'Twice=1'; do
    expectline "$shot/Scalars.ini" "$line"
done
expectnoline "$shot/Scalars.ini" 'TWICE=2'

# ---- Several files in one shot ----
mkdir -p in
printf 'Model,M7,,0,1\nScale,2,,1,2\nDelay,5,,2,3\n' >in/CH1.csv
printf 'Model,M7,,0,4\nScale,5,,1,5\n,,,2,6\n' >in/CH2.csv
stored in/CH1.csv "$PWD/in/CH2.csv" plain.csv
expectwave CH1 3 0 1 "1 2 3"
expectwave CH2 3 0 1 "4 5 6"
expectwave plain 3 0 0.25 "1.5 -2 300"
expectline "$shot/Scalars.ini" "CH1 Model=M7"
stored in/CH1.csv in/CH2.csv
for line in 'Model=M7' 'CH1 Scale=2' 'CH2 Scale=5' 'CH1 Delay=5'; do
    expectline "$shot/Scalars.ini" "$line"
    expectline "$shots/ScalarCache.ini" "$line"
done
expectnoline "$shot/Scalars.ini" '^(CH. Model|Scale|Delay|CH2 Delay)='

# ---- Files that are refused, with the line ----
# refusedtext MESSAGE TEXT: a file t.csv that holds the text.
refusedtext() {
    printf -- "$2" >t.csv
    refused "t.csv:$1" t.csv
}
refusedtext '3: "1.2.3" is not a number' '0,1\n1,2\n2,1.2.3\n'
refusedtext '1: "0x10" is not a number' '0x10,1\n1,2\n'
refusedtext '2: "1e" is not a number' '0,1\n1e,2\n'
refusedtext '2: "nan" is not a number' '0,1\n1,nan\n'
refusedtext '2: "inf" is not a number' '0,1\n1,inf\n'
refusedtext '2: "" is not a number' '0,1\n1,\n'
refusedtext '3: "Time" is not a number' '0,1\n1,2\nTime,Volt\n'
refusedtext '2: "2 3" is not a number' '0,1\n1,2 3\n'
refusedtext '2: 1e300 is too large' '0,1\n1,1e300\n'
refusedtext '2: -9.9e34 is too large' '0,1\n1,-9.9e34\n'
refusedtext '2: "1..5" is not a number' ',,,0,1\n,,,1,1..5\n'
refusedtext '1: "0.0x" is not a number' 'Unit,V,,0.0x,1\n,,,1,2\n'
refusedtext '1: not in the columns time,value' '0,1,2\n1,2,3\n'
refusedtext '1: not in the columns time,value' '0,1,2,3,4\n1,2,3,4,5\n'
refusedtext '1: not in the columns time,value' '0\n1\n'
refusedtext '2: not in the columns time,value' '0,1\n1,2,3\n'
refusedtext '2: not in the columns name,value,,time,value' ',,,0,1\n,,,1,2,3\n'
refusedtext '2: not in the columns name,value,,time,value' ',,,0,1\n,,x,1,2\n'
refusedtext '2: no sample here, but more in line 3' '0,1\n\n1,2\n'
refusedtext '3: no sample here, but more in line 5' ',,,0,1\n,,,1,2\na,b,,,\n,,,\n,,,2,3\n'
refusedtext '3: the time goes back' '0,1\n2,2\n1,3\n3,4\n'
refusedtext '4: the time is more than a step off an even spacing' 'a,b\n0,1\n1,2\n2,3\n3,4\n100,5\n'
refusedtext ' all samples have the same time' '3,1\n3,2\n'
refusedtext ' fewer than two samples' 'a,b\n0,1\n'
refusedtext ' no line with a time and a value' ''
refusedtext ' no line with a time and a value' 'a,b\nc,d\n'
refusedtext ' holds zero bytes' '0,1\n1,\0002\n2,3\n'
refusedtext ' holds zero bytes' '\xff\xfe0\000,\0001\000\n\000'
refusedtext ' steps of 1e-09 s around 5 s get lost in single precision' '5.000000000,1\n5.000000001,2\n'
refused 'missing.csv: can'"'"'t be read' missing.csv
refused 'in: can'"'"'t be read' in
expectsame "$(grep -c . "$scratch/err")" 1 "messages about a folder"

# What is wrong with all the files is said at once.
printf '0,1\n' >short.csv
refused 'bad.csv:2:' bad.csv short.csv
expecterr 'short.csv: fewer than two samples'

# ---- Names ----
impossible=('a[b' 'a]b' '@a' '.a')
# On Windows no file can have such a name.
[[ $root ]] || impossible+=('a\b' 'a*b' 'a?b' 'a:b' 'a"b' 'a<b' 'a>b' 'a|b' $'a\nb')
for name in "${impossible[@]}"; do
    cp plain.csv "$name.csv"
    refused "can't be the name of a waveform" "$name.csv"
done
cp plain.csv 'probe 1.left-side.csv'
cp plain.csv $'\xc3\xa4.csv'
cp plain.csv bare
stored 'probe 1.left-side.csv' $'\xc3\xa4.csv' bare
expectwave 'probe 1.left-side' 3 0 0.25 "1.5 -2 300"
expectwave $'\xc3\xa4' 3 0 0.25 "1.5 -2 300"
expectwave bare 3 0 0.25 "1.5 -2 300"
cp plain.csv in/PLAIN.txt
refused 'in/PLAIN.txt: would be the same waveform as plain.csv' plain.csv in/PLAIN.txt
for name in '' '*S1' 'a*' 'a?' 'a/b' 'a\b' 'a[1]'; do
    run E "$name" plain.csv
    expectstatus 1
    expecterr "can't name a shot"
done

# ---- A shot that exists stays as it is ----
before=$(find E | sort | xargs -d '\n' ls -ld --time-style=full-iso)
run E S2 good.csv
expectstatus 1
expecterr "there is a shot S2 already"
expectsame "$(find E | sort | xargs -d '\n' ls -ld --time-style=full-iso)" "$before" "the experiment"

# ---- Folders ----
for folder in new/deep/F ./G/ "$root$PWD/H" "$root$PWD/I//" 'new\J' K ../cwd/L; do
    run "$folder" A1 plain.csv
    expectstatus 0
done
for folder in new/deep/F G H I new/J K L; do
    expectfile "$folder/Shots/ShotA1/plain.wvf"
done
for folder in '' . .. / a/.. 'a/b*' Z:; do
    run "$folder" A1 plain.csv
    expectstatus 1
    expecterr "can't name an experiment"
done
run plain.csv/E A1 plain.csv
expectstatus 1
expecterr "could not be stored"
expecterr "is incomplete"

# A waveform that can't be written, here for the length of its name, leaves a shot that says so.
name=$(printf 'n%.0s' {1..252})
cp plain.csv "$name"
store plain.csv "$name"
expectstatus 1
expecterr "could not be stored"
expecterr "what there is of shot S$next in E is incomplete; delete it"
expectline "$shot/Scalars.ini" "Comment=Incomplete: store_csv was interrupted"

next=$((next + 1))
runlimited 20 E "S$next" plain.csv long.csv
expectstatus 1
expecterr "long.csv: could not be stored"
expectline "$shots/ShotS$next/Scalars.ini" "Comment=Incomplete: store_csv was interrupted"

# ---- Wrong use ----
for arguments in "" "E" "E A1"; do
    # shellcheck disable=SC2086 # they are to be split
    run $arguments
    expectstatus 2
    expecterr "usage: store_csv FOLDER SHOT FILE..."
done

finish
