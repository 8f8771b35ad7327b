#!/bin/sh
# Compares what the shared library exports with the list in exports.txt, in both directions.
#
#     exported_names.sh libVodrelCore.so|libVodrelCore.dll.a SOURCES [NM]
#
# For Windows it is the import library that says what a program can have: a function by its name, data by its pointer.
# What types are called comes along there with the classes that they are derived from.
#
# Of a class it doesn't matter which of its members the compiler left as functions, so that it counts as a whole, by
# what the headers in SOURCES mark for export and by the names in the library. Instantiations of the standard library
# that slip through, and what sanitizers add, are passed over.
set -eu
export LC_ALL=C

if [ $# -lt 2 ] || [ ! -r "$1" ] || [ ! -d "$2" ]; then
    echo "usage: $0 library sources [nm]" >&2
    exit 2
fi
list=$(dirname "$0")/exports.txt
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# kind, name as the linker knows it, name as we do
case $1 in
*.dll.a)
    "${3:-nm}" --defined-only "$1" 2>"$scratch/empty" | awk '
        $2 == "T" { print $2, $3; function_of[$3] = 1 }
        $2 == "I" && sub(/^__imp_/, "", $3) { pointer_of[$3] = 1 }
        END { for (name in pointer_of) if (!(name in function_of) && name !~ /^_ZTI/) print "D", name }' >"$scratch/names" ;;
*) "${3:-nm}" -D --defined-only "$1" | sed 's/@.*//' | awk '{ print $2, $3 }' >"$scratch/names" ;;
esac
cut -d' ' -f2 "$scratch/names" | c++filt | paste -d' ' "$scratch/names" - >"$scratch/all"

# One line for each symbol: "flat", "function", "data" or "class", and the name. Data of a class are its own business,
# but for the constants in the list.
awk -v list="$list" '
BEGIN { while ((getline line < list) > 0) listed[line] = 1 }
function class_of(name) { # all before the last "::" that is not inside < >, without the result of a template in front
    sub(/::operator.*/, "::operator", name)
    sub(/\(.*/, "", name)
    depth = end = 0
    for (i = length(name); i > 0; --i) {
        c = substr(name, i, 1)
        if (c == ">") ++depth
        else if (c == "<") --depth
        else if (depth == 0 && !end && substr(name, i - 1, 2) == "::") end = --i - 1
        else if (depth == 0 && end && c == " ") break
    }
    return substr(name, i + 1, end - i)
}
function listed_of(name, outer) { # the class in the list to which a class within it belongs
    outer = name
    while (!(("class " outer) in listed) && outer !~ /</ && sub(/::[^:]*$/, "", outer)) {}
    return ("class " outer) in listed ? outer : name
}
{
    kind = $1
    linker = $2
    name = substr($0, length(kind) + length(linker) + 3)
    if (linker ~ /^__odr_asan/) next
    if (linker ~ /^_Z(T[ISVT]|GV)?Z?(NK?)?(S[abdiost]|9__gnu_cxx)/ || linker ~ /^_Z(nw|na|dl|da)/) next
    if (name == linker) print (kind ~ /[TWi]/ ? "flat " : "data ") name
    else if (sub(/^(vtable|typeinfo|typeinfo name|VTT) for /, "", name)) print "class " listed_of(name)
    else if (name ~ /^operator/ || class_of(name) == "") print "function " name
    else if (("data " name) in listed && kind ~ /[BDRGSVu]/) print "data " name
    else print "class " listed_of(class_of(name))
}' "$scratch/all" | sort -u >"$scratch/found"

# Classes without a function or table of their own show in the headers only.
grep -rhoE '(class|struct) VODREL_API [A-Za-z]+' "$2" --include='*.h' | awk '{ print "class " $3 }' |
    sed -e 's/ MDim$/ Matrix::MDim/' -e '/ DArray$/d' | sort -u >"$scratch/declared"
sort -u "$scratch/declared" - <"$scratch/found" >"$scratch/exported"

grep -E '^[a-z]' "$list" | sort >"$scratch/expected"
failed=0
if ! diff "$scratch/expected" "$scratch/exported" >"$scratch/difference"; then
    echo "< should be exported, > shouldn't be:"
    grep '^[<>]' "$scratch/difference"
    failed=1
fi

for name in VodrelPath UserPath WorkingPath ComputerName StartTime InstalledNotifier CNotifier IDLNotifier \
    ExternalInit ModuleTable ModuleHandles NumberChars OperatorChars; do
    if cut -d' ' -f3- "$scratch/all" | grep -qw "$name"; then
        echo "exported, but the library's own: $name"
        failed=1
    fi
done

exit $failed
