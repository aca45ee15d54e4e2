#!/usr/bin/env bash
# Prints what each program and library below a folder lacks of the protections that Debian's compiler
# and linker offer, and fails if one lacks any: a position independent executable, relocations that
# are bound at start and read-only then, no executable stack, no text relocations, stack protector
# and fortified functions of the C library.
#
# Fortification replaces a function of the C library where the compiler knows the size of the buffer,
# and printf() always: a binary must not import the latter.
# usage: packaging/check-hardening.sh FOLDER
set -euo pipefail
export LC_ALL=C
readelf="${READELF:-readelf}"

# lacks FILE: prints a line for each protection that the file lacks.
lacks() {
    local header segments dynamic imports
    header="$("$readelf" -hW "$1")"
    segments="$("$readelf" -lW "$1")"
    dynamic="$("$readelf" -dW "$1")"
    imports="$("$readelf" --dyn-syms -W "$1" | awk '$7 == "UND" { sub(/@.*/, "", $8); print $8 }')"
    if grep -q INTERP <<< "$segments"; then
        grep -q 'Flags:.* PIE' <<< "$dynamic" || echo "position independent code"
    else
        grep -q 'Type: *DYN' <<< "$header" || echo "position independent code"
    fi
    grep -q GNU_RELRO <<< "$segments" || echo "read-only relocations"
    grep -qE '\(FLAGS\).*BIND_NOW|Flags:.* NOW' <<< "$dynamic" || echo "binding at start"
    ! grep -qE 'GNU_STACK.* RWE' <<< "$segments" || echo "a stack without execution"
    ! grep -q TEXTREL <<< "$dynamic" || echo "code without relocations"
    grep -qx __stack_chk_fail <<< "$imports" || echo "stack protector"
    ! grep -qxE 'v?f?printf' <<< "$imports" || echo "fortified functions"
}

status=0
count=0
while IFS= read -r -d '' file; do
    "$readelf" -h "$file" > /dev/null 2>&1 || continue
    count=$((count + 1))
    while read -r protection; do
        echo "$file: without $protection"
        status=1
    done < <(lacks "$file")
done < <(find "$1" -type f -print0)
[ "$count" -gt 0 ] || { echo "$1: no program and no library" && status=1; }
[ "$status" -ne 0 ] || echo "$count programs and libraries with all protections"
exit "$status"
