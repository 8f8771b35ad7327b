#!/usr/bin/env bash
# Builds everything with warnings as errors and runs all tests, optimised and under the sanitizers. The unit tests run
# once more as they would for a user far from here: in a time zone that isn't a whole number of hours away, and in a
# locale that writes numbers with a comma. Ends with status 1 if anything failed, after having looked at all of it.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/setup.sh

check() {
    scripts/build.sh "$1" && ctest --preset "$1" --parallel 2 --output-on-failure --no-tests=error
}

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
        ctest --preset release --label-regex unit --parallel 2 --output-on-failure --no-tests=error
}

failed=()
for preset in release asan; do
    echo "==== $preset"
    check "$preset" || failed+=("$preset")
done
echo "==== release, in another zone and locale"
check_far_away || failed+=("release in another zone and locale")

if ((${#failed[@]})); then
    echo "==== Failed: ${failed[*]}" >&2
    exit 1
fi
echo "==== All tests passed, in release, far away and in asan."
