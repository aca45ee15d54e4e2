#!/usr/bin/env bash
# The journal's program: exit codes, what it prints, and that looking changes nothing.
# usage: rivo_journal.sh RIVO_JOURNAL
set -u
program="$1"
# shellcheck source=tests/support/boundary.sh
. "$(dirname "${BASH_SOURCE[0]}")/../../support/boundary.sh"
folder="$(mktemp -d)"
trap 'rm -rf "$folder"' EXIT
cd "$folder" || exit 1

# exit_code ARGUMENT...: of the program, whose output goes to printed.txt.
exit_code() {
    "$program" "$@" > printed.txt 2>&1
    echo $?
}
# first_line: of what was printed.
first_line() { head -n 1 printed.txt; }
# state: everything that belongs to the journal.
state() { find . -name 'day*' -printf '%p %m ' -exec sha256sum {} \; | sort; }

expect "simulate" 0 "$(exit_code simulate day --sales 50 --per-shift 20 --seed 3)"
head="$(first_line)"
expect "simulate with the same seed" 0 "$(exit_code simulate again --sales 50 --per-shift 20 --seed 3)"
before="$(state)"
expect "verify" 0 "$(exit_code verify day)"
expect "what is whole" "day: whole, ${head%%-*} records, 0 of them from before the seals, head $head (compared)" \
    "$(first_line)"
expect "verify with head and key" 0 "$(exit_code verify day --head "$head" --key day.pub)"
expect "verify with a head file" 0 "$(exit_code verify day --head day.head)"
expect "head" 0 "$(exit_code head day)"
expect "head of the journal" "$head" "$(first_line)"
expect "report" 0 "$(exit_code report day 2)"
expect "first line of the report" "Z report 2" "$(first_line)"
printed_head="$(awk '/^Journal: / { record = $2; getline; print record "-" $0 }' printed.txt)"
expect "a head from paper" 0 "$(exit_code verify day --head "$printed_head")"
expect "export as JSON" 0 "$(exit_code export day --format json)"
expect "records in JSON" "${head%%-*}" \
    "$(python3 -c 'import json; print(len(json.load(open("printed.txt"))))')"
expect "export as CSV" 0 "$(exit_code export day --format csv)"
expect "records in CSV" "${head%%-*}" \
    "$(python3 -c 'import csv; print(len(list(csv.DictReader(open("printed.txt", newline="")))))')"
columns() { cut -d, -f1-7 printed.txt; }
sold="$(columns)"
expect "export of the same seed" 0 "$(exit_code export again --format csv)"
expect "the same seed gives the same sales" "$sold" "$(columns)"
expect "nothing changed by looking" "$before" "$(state)"

expect "another key" 1 "$(exit_code verify day --key again.pub)"
expect "another's head file" 1 "$(exit_code verify day --head again.head)"
expect "another's head" 1 "$(exit_code verify day --head "${head%-*}-00000000000000000000000000000000")"
expect "a head that the journal does not reach" 1 "$(exit_code verify day --head "999999-${head#*-}")"
expect "first record that is missing" "day: not whole: record $((${head%%-*} + 1)): the journal ends before its head" \
    "$(first_line)"
expect "no head" 2 "$(exit_code verify day --head none)"
expect "no key" 2 "$(exit_code verify day --key day)"
expect "no file" 2 "$(exit_code verify none)"
expect "a text" 2 "$(echo "Dear diary" > text && exit_code verify text)"
expect "an empty file" 2 "$(: > empty && exit_code verify empty)"
expect "a journal that was emptied" 1 \
    "$(: > emptied && cp again.head emptied.head && exit_code verify emptied)"
expect "a folder" 2 "$(exit_code verify .)"
expect "no shift" 2 "$(exit_code report day 99)"
expect "no file to look into" 2 "$(exit_code head none)"
expect "no file is made" "" "$(ls none* 2> /dev/null)"
for arguments in "" verify "verify day day" "report day" "report day x" "sell day" \
    "export day --format xml" "simulate day --sales 0" "simulate day --sales 5 --seed x"; do
    # shellcheck disable=SC2086 # several arguments
    expect "rivo-journal $arguments" 2 "$(exit_code $arguments)"
done
expect "nothing changed by mistakes" "$before" "$(state)"

rm day.head
expect "verify without a head" 0 "$(exit_code verify day)"
expect "without a head" "(not compared)" "$(first_line | grep -o '([a-z ]*)$')"
expect "simulate without its head" 2 "$(exit_code simulate day --sales 5)"
expect "a copy of the file alone" 0 "$(cp again alone && exit_code verify alone)"

no_failure
