#!/usr/bin/env bash
# Builds everything with warnings as errors and runs all tests, optimised and under the sanitizers. Under these the unit
# tests run once more as they would for a user far from here: in a time zone that isn't a whole number of hours away, and
# in a locale that writes numbers with a comma. Ends with status 1 if anything failed, after having looked at all of it.
#
#     scripts/test.sh [--windows]
#
# With --windows it builds for Windows instead, and runs the tests of that under Wine, some of them beside a program for
# Linux. The first time takes some minutes more and 1.5 GB of disk: compiler and Wine are installed, and Wine gets a
# folder of its own, build/wine.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

check() {
    scripts/build.sh "$1" && ctest --preset "$1" --parallel 2 --output-on-failure --no-tests=error
}

test_on_windows() {
    scripts/setup.sh --windows
    export WINEPREFIX=${WINEPREFIX:-$PWD/build/wine}
    scripts/wine.sh --start
    trap 'scripts/wine.sh --stop' EXIT
    echo "==== windows"
    scripts/build.sh release --target make_tree
    check windows || { echo "==== Failed: windows" >&2; exit 1; }
    echo "==== All tests passed, on Windows as Wine has it."
}

case ${1:-} in
"") ;;
--windows)
    test_on_windows
    exit
    ;;
*)
    echo "usage: scripts/test.sh [--windows]" >&2
    exit 2
    ;;
esac

scripts/setup.sh

far_zone=NPT-5:45
far_locale=de_DE.ISO-8859-1
locales=$(mktemp -d)
trap 'rm -rf "$locales"' EXIT

make_far_locale() {
    if localedef --no-archive -c -i de_DE -f ISO-8859-1 "$locales/$far_locale" &&
        [[ $(LOCPATH=$locales LC_ALL=$far_locale locale decimal_point) == , ]]; then
        return 0
    fi
    echo "test.sh: can't make a locale with a decimal comma" >&2
    return 1
}

check_far_away() {
    make_far_locale && TZ=$far_zone LOCPATH=$locales VODREL_TEST_LOCALE=$far_locale \
        ctest --preset asan --label-regex unit --parallel 2 --output-on-failure --no-tests=error
}

failed=()
for preset in release asan; do
    echo "==== $preset"
    check "$preset" || failed+=("$preset")
done
echo "==== asan, in another zone and locale"
check_far_away || failed+=("asan in another zone and locale")

if ((${#failed[@]})); then
    echo "==== Failed: ${failed[*]}" >&2
    exit 1
fi
echo "==== All tests passed, in release, in asan and far away."
