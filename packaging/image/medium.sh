#!/usr/bin/env bash
# Makes a medium that brings a root file system to a vehicle, signed with the operator's private key.
# usage: medium.sh ROOT VERSION KEY FILE, where FILE is written
set -euo pipefail
[ $# -eq 4 ] || { sed -n 's/^# usage: /usage: /p' "$0" >&2; exit 2; }
medium="$(mktemp -d)"
trap 'rm -rf "$medium"' EXIT
cp "$1" "$medium/root.img"
printf 'version %s\nsize %s\nsha256 %s\n' "$2" "$(stat -c %s "$1")" "$(sha256sum < "$1" | cut -c1-64)" \
    > "$medium/manifest"
openssl pkeyutl -sign -inkey "$3" -rawin -in "$medium/manifest" -out "$medium/manifest.sig"
size=$(($(stat -c %s "$1") / 1048576 + 16))
rm -f "$4"
mke2fs -q -t ext4 -m 0 -L RIVO_UPDATE -d "$medium" -O ^has_journal "$4" "${size}M"
