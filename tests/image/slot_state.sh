#!/bin/sh
# Tries packaging/image/slot-state on a file: what is written is read again, and a block that a power
# cut tore leaves the state before.
set -eu
cd "$(dirname "$0")/../.."
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
export partition="$work/disk"
truncate -s 4096 "${partition}1"
# shellcheck source=packaging/image/slot-state
. packaging/image/slot-state

failures=0
is() { # WHAT STATE
    read_state
    [ "$sequence $slot $mark $left" = "$2" ] || {
        echo "$1: $sequence $slot $mark $left, not $2" >&2
        failures=$((failures + 1))
    }
}
# tear BLOCK BYTES: the block ends after so many bytes.
tear() { dd if=/dev/zero of="${partition}1" bs=1 seek=$(($1 * 512 + $2)) count=$((512 - $2)) conv=notrunc 2> /dev/null; }

is "an empty state is slot a" "0 a good 0"
write_state b try 3
is "an update is tried" "1 b try 3"
for left in 2 1 0; do
    write_state b try "$left"
done
is "the last start of a trial" "4 b try 0"
cp "${partition}1" "$work/before"
for bytes in 0 1 3 9 12 20; do
    cp "$work/before" "${partition}1"
    is "before the block is torn" "4 b try 0"
    torn="$next"
    write_state a good 0
    is "the change" "5 a good 0"
    tear "$torn" "$bytes"
    is "a change torn after $bytes bytes" "4 b try 0"
done
write_state a good 0
is "a torn block is written again" "5 a good 0"
[ "$failures" -eq 0 ] && echo "slot state: as expected"
