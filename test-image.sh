#!/usr/bin/env bash
# Starts the image of make-image.sh in an emulated board, sells, and cuts the power at random moments.
# usage: ./test-image.sh [--cuts N] [--seed S]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
# shellcheck source=scripts/setup.sh
. scripts/setup.sh

# shellcheck disable=SC2086 # a list of names
need_packages $packages_to_test_image
for name in disk.img update.img vmlinuz initrd.img; do
    [ -e "build/image/$name" ] || { ./make-image.sh; break; }
done
exec python3 tests/image/power_cuts.py build/image "$@"
