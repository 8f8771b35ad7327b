#!/usr/bin/env bash
# Brings the sources into the project's form. With --check it only says which ones aren't, and fails if there are any.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

case ${1:-} in
"") action=(-i) ;;
--check) action=(--dry-run --Werror) ;;
*)
    echo "usage: scripts/format.sh [--check]" >&2
    exit 2
    ;;
esac

scripts/setup.sh
wanted=14
format=clang-format
if command -v "clang-format-$wanted" >/dev/null; then format=clang-format-$wanted; fi
version=$("$format" --version | grep -oE '[0-9]+' | head -n 1)

folders=()
for folder in src tests bench examples fuzz; do
    if [[ -d $folder ]]; then folders+=("$folder"); fi
done

status=0
find "${folders[@]}" -type f \( -name '*.h' -o -name '*.c' -o -name '*.cpp' \) -print0 |
    xargs -0 "$format" "${action[@]}" || status=1
if ((status)) && [[ $version != "$wanted" ]]; then
    echo "format.sh: the sources follow clang-format $wanted; this is $version" >&2
fi
exit "$status"
