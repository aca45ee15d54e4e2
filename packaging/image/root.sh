#!/usr/bin/env bash
# Packs build/image/root, which make-image.sh has made, into the file system of a slot. Compressed, an
# update is a quarter of the files, and the slot has no free blocks that would have to be written.
# usage: root.sh FILE [VERSION], where FILE is written; VERSION instead of the version there
set -euo pipefail
file="$(realpath "$1")" version="${2:-}"
cd "$(dirname "${BASH_SOURCE[0]}")/../../build/image/root"
other=()
if [ -n "$version" ]; then
    other=(-p "usr/lib/rivo-image/version f 644 0 0 echo $version" -e usr/lib/rivo-image/version)
fi
rm -f "$file"
mksquashfs . "$file" -comp zstd -Xcompression-level 12 -noappend -no-progress -quiet "${other[@]}"
