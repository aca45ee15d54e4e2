# shellcheck shell=bash
# Sourced by the scripts that run the tests of a build once more, in another way.

# vary_tests BUILD INTO SED_SCRIPT: the C++ tests of a build as a set of their own, for ctest
# --test-dir INTO, each line of it changed by SED_SCRIPT. The programs stay those of the build; the
# homes of the tests are below INTO, so that a variant may run beside the build's own tests. Both
# folders are absolute paths.
vary_tests() {
    local build="$1" into="$2" script="$3" folder home
    rm -rf "$into"
    mkdir -p "$into"
    : > "$into/CTestTestfile.cmake"
    for folder in budget core framework grid memory property sales swap feed tools delivery; do
        [ -f "$build/tests/$folder/CTestTestfile.cmake" ] || continue
        mkdir -p "$into/$folder"
        sed -e "s#$build/tests/home/#$into/home/#g" -e "$script" "$build/tests/$folder/CTestTestfile.cmake" > "$into/$folder/CTestTestfile.cmake"
        echo "subdirs(\"$folder\")" >> "$into/CTestTestfile.cmake"
    done
    cat "$into"/*/CTestTestfile.cmake | grep -o "$into/home/[A-Za-z0-9_]*" | sort -u |
        while IFS= read -r home; do mkdir -p "$home/tmp" "$home/work"; done
}

# run_variant INTO OPTION...: runs those tests, three at a time; one line of counts, and the whole
# output on failure.
run_variant() {
    local into="$1" status=0
    shift
    ctest --test-dir "$into" -j 3 --no-tests=error --output-on-failure "$@" > "$into/ctest.log" 2>&1 ||
        status=$?
    [ "$status" -eq 0 ] || cat "$into/ctest.log"
    grep -E '^Totals:' "$into/Testing/Temporary/LastTest.log" | awk -v name="${into##*/}" '
        { passed += $2; failed += $4; skipped += $6 }
        END { printf "%s: %d checks passed, %d failed, %d skipped, in %d test programs\n",
                     name, passed, failed, skipped, NR }'
    return "$status"
}
