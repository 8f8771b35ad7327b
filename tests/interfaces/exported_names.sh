#!/bin/sh
# Checks what the shared library exports: exactly these flat functions, and at least these data.
#
#     exported_names.sh libVodrelCore.so
set -eu

if [ $# -ne 1 ] || [ ! -r "$1" ]; then
    echo "usage: $0 library" >&2
    exit 2
fi
names=$(nm -D --defined-only "$1" | sed 's/@.*//')
failed=0

flat=$(printf '%s\n' "$names" | awk '$2 == "T" && $3 !~ /^_Z/ { print $3 }' | LC_ALL=C sort)
expected='CSleep
CreateShotC
GetStringC
GetStringDataC
GetWaveformC
GetWaveformInfoC
InitializeVodrelC
NotifyC
SetExperimentC
SetShotC
SetStringDataC
SetWaveformC
SetWaveformXYC
TestFuncC'
if [ "$flat" != "$expected" ]; then
    echo "exported flat functions are:"
    echo "$flat"
    echo "instead of:"
    echo "$expected"
    failed=1
fi

for name in Expt VoIni SheetData QNot Logging Silent PublicWrite npos DFMax pi DEmptyString LDelim LenLD \
    _ZN10Experiment14CurDataVersionE; do
    if ! printf '%s\n' "$names" | awk -v name="$name" '$3 == name && $2 ~ /^[BDRVu]$/ { found = 1 } END { exit !found }'; then
        echo "data not exported: $name"
        failed=1
    fi
done

for name in VodrelPath UserPath WorkingPath ComputerName StartTime InstalledNotifier CNotifier IDLNotifier \
    ExternalInit; do
    if printf '%s\n' "$names" | awk -v name="$name" '$3 == name { found = 1 } END { exit !found }'; then
        echo "data exported that is the library's own: $name"
        failed=1
    fi
done

exit $failed
