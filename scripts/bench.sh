#!/usr/bin/env bash
# Builds the optimised library and runs all benchmarks: tables with our figures beside those of the bare operations.
# Arguments go to each benchmark program, for instance --benchmark_filter=Waveform.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/setup.sh
scripts/build.sh release

ran=0
for program in build/release/bench/*; do
    [[ -f $program && -x $program ]] || continue
    echo "==== ${program##*/}"
    "$program" --benchmark_counters_tabular=true "$@"
    ran=$((ran + 1))
done
if ((ran == 0)); then
    echo "bench.sh: there are no benchmarks in build/release/bench" >&2
    exit 1
fi
