#!/usr/bin/env bash
# Starts the image of make-image.sh in an emulated board, sells, and cuts the power at random moments.
# usage: ./test-image.sh [--cuts N] [--seed S]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
# shellcheck source=scripts/setup.sh
. scripts/setup.sh

# shellcheck disable=SC2086 # a list of names
need_packages $packages_to_test_image
for name in disk.img root.img update.img vmlinuz initrd.img; do
    [ -e "build/image/$name" ] || { ./make-image.sh; break; }
done
build_variant release release --target rivo-journal

# Two media, so that there is always one whose version is not the one that runs.
folder="$(mktemp -d)"
trap 'rm -rf "$folder"' EXIT
quietly "Making another version" packaging/image/root.sh "$folder/root.img" next
packaging/image/medium.sh "$folder/root.img" next build/image/update.key "$folder/next.img"
rm "$folder/root.img"
python3 tests/image/power_cuts.py build/image build/release/bin/rivo-journal \
    --update build/image/update.img --update "$folder/next.img" "$@"
