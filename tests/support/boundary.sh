# shellcheck shell=bash
# What the tests of a built library's boundary share. Source it; end with no_failure.
export LC_ALL=C # the order of what is compared
failures=0

# expect WHAT EXPECTED ACTUAL
expect() {
    [ "$2" = "$3" ] && return 0
    printf 'FAIL: %s\n--- expected\n%s\n--- actual\n%s\n' "$1" "$2" "$3"
    failures=$((failures + 1))
}

# needed LIBRARY: the libraries that it needs but those of the compiler; the core library without the
# version that another maker's name may end in.
needed() {
    "${READELF:-readelf}" -d "$1" | sed -nE 's/.*\(NEEDED\).*\[(.*)\]/\1/p' |
        grep -vE '^lib(asan|ubsan|stdc\+\+|gcc_s|m|c)\.so|^ld-linux' |
        sed -E 's/^(libRIVO_ARM_QtLib\.so)[.0-9]*$/\1/' | sort
}

# expect_no_paths LIBRARY SOURCE_DIR BINARY_DIR FILE...: neither folder of the machine that built
# the library is named in the files. Sanitizers put source paths of their own into it.
expect_no_paths() {
    local library="$1" folders=("$2" "$3") folder file
    shift 3
    "${NM:-nm}" -D --undefined-only "$library" | grep -q __asan_init && return 0
    for folder in "${folders[@]}"; do
        for file in "$@"; do
            expect "$file holds no path of the machine that built it" "0" \
                "$(grep -caF "$folder/" "$file")"
        done
    done
}

no_failure() { [ "$failures" -eq 0 ]; }
