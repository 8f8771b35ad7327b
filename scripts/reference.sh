#!/usr/bin/env bash
# Makes the reference, pages for a browser, from the headers of the library. Fails if Doxygen warns of anything.
#
#     scripts/reference.sh [FOLDER]
#
# It goes to FOLDER/html, build/reference/html unless given.
set -euo pipefail
project=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
folder=${1:-$project/build/reference}
[[ $folder == /* ]] || folder=$PWD/$folder
cd "$project"

command -v doxygen >/dev/null || scripts/setup.sh
version=$(sed -n 's/^project(VodrelCore VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
rm -rf "$folder/html"
mkdir -p "$folder"
doxygen - <<END || { echo "reference.sh: Doxygen warned; what it made is in $folder/html" >&2; exit 1; }
@INCLUDE = docs/Doxyfile
INPUT += $(sed 's,^,src/,' cmake/public-headers.txt | tr '\n' ' ')
OUTPUT_DIRECTORY = "$folder"
PROJECT_NUMBER = $version
END
echo "$folder/html/index.html"
