#!/usr/bin/env bash
# Builds everything with warnings as errors and runs all tests, optimised and under the sanitizers. Ends with status 1
# if anything failed, after having looked at both.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/setup.sh

check() {
    scripts/build.sh "$1" && ctest --preset "$1" --parallel 2 --output-on-failure --no-tests=error
}

failed=()
for preset in release asan; do
    echo "==== $preset"
    check "$preset" || failed+=("$preset")
done

if ((${#failed[@]})); then
    echo "==== Failed: ${failed[*]}" >&2
    exit 1
fi
echo "==== All tests passed, in release and asan."
