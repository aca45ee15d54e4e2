#!/usr/bin/env bash
# Makes a medium that brings a root file system to a vehicle.
# usage: medium.sh ROOT VERSION FILE, where FILE is written
set -euo pipefail
[ $# -eq 3 ] || { sed -n 's/^# usage: /usage: /p' "$0" >&2; exit 2; }
medium="$(mktemp -d)"
trap 'rm -rf "$medium"' EXIT
cp --sparse=always "$1" "$medium/root.img"
(cd "$medium" && sha256sum root.img > root.img.sha256)
echo "$2" > "$medium/version"
size=$(($(stat -c %s "$1") / 1048576 + 48))
rm -f "$3"
mke2fs -q -t ext4 -m 0 -L RIVO_UPDATE -d "$medium" -O ^has_journal "$3" "${size}M"
