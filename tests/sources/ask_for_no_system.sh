#!/bin/sh
# The platform layer alone knows which system it is on, and the macro that marks exports: elsewhere in the sources no line
# asks for the system, and none includes a header of one.
#
#     ask_for_no_system.sh SOURCES
set -eu
sources=${1:?usage: ask_for_no_system.sh SOURCES}

# What each system and each compiler for it defines, what CMake calls them, and headers that aren't the language's own.
systems='_WIN(32|64)|WIN32|__CYGWIN__|__MINGW(32|64)__|_MSC_VER|__MINGW_|linux__|__linux|__gnu_linux__|__GLIBC__|__unix|__APPLE__|_POSIX_|__BSD'
headers='#[[:space:]]*include[[:space:]]*<([A-Za-z0-9_]+/|[A-Za-z0-9_]+\.h>)'

# asks FILE...: the lines that do.
asks() {
    grep -nHE "$systems|$headers" "$@"
}

# A search that finds nothing anywhere would find nothing here either.
if ! asks "$sources/foundation/Export.h" >/dev/null || ! asks "$sources"/platform/windows/*.h >/dev/null; then
    echo "the search doesn't find what is there"
    exit 1
fi

if find "$sources" -path "$sources/platform" -prune -o -type f \( -name '*.h' -o -name '*.cpp' \) \
    ! -path "$sources/foundation/Export.h" -print | xargs grep -nHE "$systems|$headers"; then
    echo "asked for the system outside of the platform layer"
    exit 1
fi
