#!/usr/bin/env bash
# Tries packaging/image/rivo-slot with media of packaging/image/medium.sh on files in the place of
# partitions: only what the operator signed, and what arrived whole, is tried at the next start.
set -euo pipefail
cd "$(dirname "$0")/../.."
# shellcheck source=tests/support/boundary.sh
. tests/support/boundary.sh
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
mkdir "$work/bin" "$work/lib"
printf '#!/bin/sh\necho "%s"\n' "$work/disk2" > "$work/bin/findmnt"
# shellcheck disable=SC2016 # for the program
printf '#!/bin/sh\nstat -c %%s "$2"\n' > "$work/bin/blockdev"
chmod 755 "$work"/bin/*
PATH="$work/bin:$PATH:/usr/sbin:/sbin"
cp packaging/image/slot-state "$work/lib"
echo 1.0 > "$work/lib/version"
sed "s#/usr/lib/rivo-image\$#'$work/lib'#; s#/proc/sys/vm/drop_caches#'$work/caches'#" packaging/image/rivo-slot \
    > "$work/rivo-slot"
for name in operator other; do
    openssl genpkey -algorithm ed25519 -out "$work/$name.key"
done
openssl pkey -in "$work/operator.key" -pubout -out "$work/lib/update.pem"
head -c 300000 /dev/urandom > "$work/root.img"

# make_medium VERSION KEY: what medium.sh puts into the file system, in the folder "medium".
make_medium() {
    rm -rf "$work/medium"
    mkdir "$work/medium"
    packaging/image/medium.sh "$work/root.img" "$1" "$work/$2.key" "$work/medium.img" > "$work/log"
    (cd "$work" && debugfs -R "rdump / medium" medium.img 2> /dev/null)
}

# after VERSION KEY CHANGE...: what rivo-slot says of such a medium after a change to its files, and
# the state of the slots then. Slot b has 400,000 bytes.
after() {
    make_medium "$1" "$2"
    shift 2
    truncate -s 0 "$work/disk1" "$work/disk3"
    truncate -s 4096 "$work/disk1"
    truncate -s 400000 "$work/disk3"
    (cd "$work/medium" && "$@")
    sh "$work/rivo-slot" update "$work/medium" 2>&1 || echo "exit code $?"
    sh "$work/rivo-slot" status
}
damage() { printf x | dd of=root.img bs=1 seek=200000 conv=notrunc 2> /dev/null; }
promise() { sed -i "s/^$1 .*/$1 $2/" manifest; }
untouched="a good 0, running $work/disk2, 1.0"

expect "a signed update is tried" "rivo-slot: writing version 2.0 to slot b
rivo-slot: slot b is tried at the next start
b try 3, running $work/disk2, 1.0" "$(after 2.0 operator true)"
expect "the slot has the update" "" "$(cmp -n 300000 "$work/root.img" "$work/disk3" 2>&1)"
expect "what is behind it in the slot stays" 400000 "$(stat -c %s "$work/disk3")"
expect "the version that runs" "rivo-slot: the update is the version that runs
$untouched" "$(after 1.0 operator true)"
unsigned="rivo-slot: the update is not signed by the operator
exit code 1
$untouched"
expect "an update of another key" "$unsigned" "$(after 2.0 other true)"
expect "an update without a signature" "$unsigned" "$(after 2.0 operator rm manifest.sig)"
expect "a changed version" "$unsigned" "$(after 1.0 operator promise version 2.0)"
expect "a changed checksum" "$unsigned" "$(after 2.0 operator promise sha256 0)"
expect "a longer manifest than is read" "$unsigned" \
    "$(after 2.0 operator eval 'head -c 5000 /dev/zero >> manifest')"
differs="rivo-slot: writing version 2.0 to slot b
rivo-slot: slot b differs from the update
exit code 1
$untouched"
expect "a changed byte" "$differs" "$(after 2.0 operator damage)"
expect "a medium that is pulled out" "$differs" "$(after 2.0 operator truncate -s 150000 root.img)"
head -c 500000 /dev/urandom > "$work/root.img"
expect "an update that is larger than the slot" "rivo-slot: version 2.0 is larger than slot b
exit code 1
$untouched" "$(after 2.0 operator true)"
no_failure
