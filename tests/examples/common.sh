# shellcheck shell=bash
# What the tests of the examples share: a fresh folder in which a program runs, and checks that count what failed.
# A script sources this with the program as its first argument, and ends with `finish`.

program=$(realpath -- "${1:?usage: ${0##*/} PROGRAM}")
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
scratch=$(mktemp -d "${TMPDIR:-/tmp}/vodrel-example-XXXXXX")
trap 'rm -rf -- "$scratch"' EXIT
mkdir "$scratch/home" "$scratch/data" "$scratch/cwd"
export HOME=$scratch/home XDG_DATA_HOME=$scratch/data LC_ALL=C
cd "$scratch/cwd" || exit 1
failures=0

# What stands in front of an absolute name of this host for the program: its drive, where it is one for another system.
root=${VODREL_ROOT:-}

# fail MESSAGE: counts a failure and says in which line of the test it came up.
fail() {
    local i=0
    while [[ ${BASH_SOURCE[i]} == "${BASH_SOURCE[0]}" ]]; do i=$((i + 1)); done
    echo "FAILED (${BASH_SOURCE[i]##*/}:${BASH_LINENO[i - 1]}): $*" >&2
    failures=$((failures + 1))
}

# run ARGUMENT...: runs the program and keeps its exit status, output and errors.
run() {
    runonce "$@"
    # Wine was seen to end a program of itself, once in some thousand starts and without a word. The examples always say
    # why they fail.
    if [[ -n $root && $status == 1 && ! -s $scratch/out && ! -s $scratch/err ]]; then
        echo "${0##*/}: started once more, since it failed without a word: $*" >&2
        runonce "$@"
    fi
    plainlines
}

runonce() {
    status=0
    "$program" "$@" >"$scratch/out" 2>"$scratch/err" || status=$?
}

# plainlines: lines of what a program of another system said end as they do here.
plainlines() { [[ -z $root ]] || sed -i 's/\r$//' "$scratch/out" "$scratch/err"; }

# runlimited KIBIBYTES ARGUMENT...: the same on a disk that takes no more than this in each file.
runlimited() {
    local room=$1
    shift
    status=0
    (trap '' XFSZ && ulimit -f "$room" && exec "$program" "$@") >"$scratch/out" 2>"$scratch/err" || status=$?
    plainlines
}

# said: what the last run printed.
said() {
    head -n 40 "$scratch/out" | sed 's/^/    out: /'
    head -n 20 "$scratch/err" | sed 's/^/    err: /'
}

expectstatus() { [[ $status == "$1" ]] || fail "exit status $status, not $1"$'\n'"$(said)"; }
expectout() { grep -qE -- "$1" "$scratch/out" || fail "no line like '$1' in the output"$'\n'"$(said)"; }
expecterr() { grep -qF -- "$1" "$scratch/err" || fail "no '$1' among the errors"$'\n'"$(said)"; }
expectquiet() { [[ ! -s $scratch/err ]] || fail "errors where none were due"$'\n'"$(said)"; }
expectfile() { [[ -f $1 ]] || fail "no file $1"; }
expectnothing() { [[ ! -e $1 ]] || fail "$1 is there"; }
expectsame() { [[ $1 == "$2" ]] || fail "$3: got '$1', not '$2'"; }

# expectline FILE LINE: a settings file has this line, ended by CR LF or by the end of the file.
expectline() { tr -d '\r' <"$1" | grep -qxF -- "$2" || fail "$1 has no line '$2'"$'\n'"$(cat "$1")"; }
expectnoline() { ! tr -d '\r' <"$1" | grep -qE -- "$2" || fail "$1 has a line like '$2'"$'\n'"$(cat "$1")"; }

# wvf FILE header|samples: what a waveform's file holds, taken from its bytes.
wvf() { python3 "$here/wvf.py" "$@"; }

finish() {
    [[ -z $(ls -A "$HOME") ]] || fail "something was written into the home folder: $(ls -A "$HOME")"
    ((failures == 0)) || exit 1
    echo "all as expected"
}
