#!/usr/bin/env bash
# packaging/check-hardening.sh finds each protection that a program or library lacks.
# usage: hardening.sh SOURCE_DIR
set -u
source_dir="$1"
# shellcheck source=tests/support/boundary.sh
. "$(dirname "${BASH_SOURCE[0]}")/../support/boundary.sh"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT

cat > "$work/main.c" << 'PROGRAM'
#include <stdio.h>
#include <string.h>
int main(int count, char** words)
{
    char copy[16];
    printf("%d %s\n", count, strncpy(copy, words[0], sizeof(copy) - 1));
    return (int)strlen(copy) > count;
}
PROGRAM

# without FLAG...: what the check misses in a program and in a library, built with all protections
# and then with these flags; and whether it fails.
without() {
    local kind
    for kind in program library; do
        local own=(-fPIE -pie)
        [ "$kind" = program ] || own=(-fPIC -shared)
        [ "$kind$*" != "library-no-pie" ] || continue # no such library
        mkdir -p "$work/files"
        cc -O2 -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2 -Wl,-z,relro,-z,now \
            "${own[@]}" "$@" "$work/main.c" -o "$work/files/$kind" || return
        "$source_dir/packaging/check-hardening.sh" "$work/files" 2>&1 |
            sed "s#^$work/files/##"
        echo "exit code ${PIPESTATUS[0]}"
        rm -r "$work/files"
    done
}

# expect_finding FLAG PROTECTION: without it, in the program and in the library.
expect_finding() {
    expect "$1" "program: without $2
exit code 1
library: without $2
exit code 1" "$(without "$1")"
}

expect "all protections" "1 programs and libraries with all protections
exit code 0
1 programs and libraries with all protections
exit code 0" "$(without)"
expect_finding -Wl,-z,norelro "read-only relocations"
expect_finding -Wl,-z,lazy "binding at start"
expect_finding -Wl,-z,execstack "a stack without execution"
expect_finding -fno-stack-protector "stack protector"
expect_finding -U_FORTIFY_SOURCE "fortified functions"
expect "-no-pie" "program: without position independent code
exit code 1" "$(without -no-pie)"
mkdir "$work/empty"
expect "nothing to check" "$work/empty: no program and no library" \
    "$("$source_dir/packaging/check-hardening.sh" "$work/empty")"

no_failure
