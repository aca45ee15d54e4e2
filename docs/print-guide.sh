#!/usr/bin/env bash
# Prints the guide for drivers, docs/driver.md, as FILE.pdf: one sheet of paper. Its pages are pictures,
# too: FILE-1.png and FILE-2.png.
# usage: docs/print-guide.sh FILE     (without .pdf)
set -euo pipefail
file="$(realpath -m "${1:?usage: docs/print-guide.sh FILE}")"
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/setup.sh
. scripts/setup.sh

# shellcheck disable=SC2086 # a list of names
need_packages $packages_to_test
build_variant dev dev --target tst_driver_guide
RIVO_GUIDE="$file" quietly "Printing the guide" \
    tests/support/run_test.sh "$PWD/build/dev/guide" tst_driver_guide "$PWD/build/dev/bin/tst_driver_guide"
ls "$file"*
