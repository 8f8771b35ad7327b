#!/usr/bin/env bash
# Builds the optimised library, runs all benchmarks and prints a table of our figures beside those of the bare
# operations. Without arguments it also writes them to docs/performance.md.
#
# Arguments go to each benchmark program, for instance --benchmark_filter=Waveform.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/setup.sh
if command -v ccache >/dev/null; then
    export CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache
fi

cmake --preset release >/dev/null
cmake --build --preset release --parallel "$(nproc)" --target benchmarks

# The files stand in memory where there is room for them: it is the library that is measured, not a disk.
room_in_memory() {
    (($(df --output=avail -k /dev/shm 2>/dev/null | tail -n 1) > 3000000))
}
if [[ -z ${TMPDIR:-} ]] && room_in_memory; then TMPDIR=/dev/shm; fi
TMPDIR=$(mktemp -d "${TMPDIR:-/tmp}/vodrel-bench-XXXXXX")
export TMPDIR
results=build/bench
trap 'rm -rf "$TMPDIR"' EXIT
rm -rf "$results"
mkdir -p "$results"

for program in build/release/bench/*Bench; do
    name=${program##*/}
    echo "Measuring $name ..."
    "$program" --benchmark_out="$results/$name.json" --benchmark_enable_random_interleaving=true \
        --benchmark_repetitions=9 --benchmark_min_time=0.02 "$@" >"$results/$name.log" 2>&1 ||
        { cat "$results/$name.log" >&2; exit 1; }
done

write=()
(($#)) || write=(--write docs/performance.md)
python3 bench/report.py "${write[@]}" "$results"/*.json
