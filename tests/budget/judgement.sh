#!/usr/bin/env bash
# What judge.awk prints about figures: each case with what is stored, what was measured, the exit code and
# a pattern that one line of the table must match.
# usage: judgement.sh JUDGE
set -u
export LC_ALL=C # decimal points
folder="$(mktemp -d)"
trap 'rm -rf "$folder"' EXIT
passed=0 failed=0

# expect CASE STORED MEASURED EXIT_CODE PATTERN
expect() {
    local status=0 said
    printf '%b' "$2" > "$folder/stored"
    printf '%b' "$3" > "$folder/measured"
    said="$(awk -f "$judge" "$folder/stored" "$folder/measured")" || status=$?
    if [ "$status" -eq "$4" ] && grep -qE -- "$5" <<< "$said"; then
        passed=$((passed + 1))
        return
    fi
    failed=$((failed + 1))
    printf 'FAIL: %s: exit code %d\n%s\n' "$1" "$status" "$said"
}

judge="$1"
two='get 1000\nsort 200\n'
expect "the same passes" "$two" "$two" 0 '^2 of 2 paths within 3 %$'
expect "comments are no paths" "# get 1\n\n$two" "$two" 0 '^2 of 2 paths within 3 %$'
expect "2 % more passes" "$two" 'get 1020\nsort 200\n' 0 '^get +1000 +1020 +\+2\.00 %$'
expect "2 % fewer passes" "$two" 'get 980\nsort 200\n' 0 '^get +1000 +980 +-2\.00 %$'
expect "3 % more passes" "$two" 'get 1030\nsort 206\n' 0 '^sort +200 +206 +\+3\.00 %$'
expect "3 % fewer passes" "$two" 'get 970\nsort 194\n' 0 '^sort +200 +194 +-3\.00 %$'
expect "one above 3 % more fails" "$two" 'get 1031\nsort 200\n' 1 '^get .* \+3\.10 %  too many$'
expect "4 % more fails" "$two" 'get 1000\nsort 208\n' 1 '^sort +200 +208 +\+4\.00 %  too many$'
expect "4 % more is counted" "$two" 'get 1000\nsort 208\n' 1 '^1 of 2 paths within 3 %$'
expect "4 % fewer fails, so that the figure is lowered" "$two" 'get 960\nsort 200\n' 1 \
    '^get .* -4\.00 %  fewer: lower the stored figure$'
expect "more here is not made up for by fewer there" "$two" 'get 1040\nsort 192\n' 1 '^0 of 2 paths'
expect "large figures are compared exactly" 'get 3000000000\n' 'get 3090000001\n' 1 'too many$'
expect "a path that was not measured fails" "$two" 'get 1000\n' 1 '^sort +200 +not measured$'
expect "a path that is not stored fails" 'get 1000\n' "$two" 1 '^sort +200 +not stored$'
expect "nothing at all fails" '' '' 1 '^0 of 0 paths'
expect "nothing measured fails" "$two" '' 1 '^0 of 2 paths'
expect "a name without figure fails" "$two" 'get \nsort 200\n' 1 'measured: "get " is not a name'
expect "a figure below zero fails" "$two" 'get -1000\nsort 200\n' 1 'measured: "get -1000" is not'
expect "a figure of zero fails" 'get 0\nsort 200\n' "$two" 1 'stored: "get 0" is not'
expect "order does not matter" "$two" 'sort 200\nget 1000\n' 0 '^2 of 2 paths within 3 %$'
echo "Totals: $passed passed, $failed failed, 0 skipped"
[ "$failed" -eq 0 ]
