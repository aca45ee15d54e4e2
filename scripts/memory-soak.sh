#!/usr/bin/env bash
# Sells in the window of the terminal, with changes of page and closings of shifts, and prints the
# memory after half of the sales and after all: what is in use, what is resident, and the items on
# the screen. Fails if the second figures are above the bounds of the test.
# usage: scripts/memory-soak.sh [SALES]     (20000 if none is given)
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/setup.sh
. scripts/setup.sh

# shellcheck disable=SC2086 # a list of names
need_packages $packages_to_test
build_variant dev dev --target tst_screen_soak
RIVO_SOAK_SALES="${1:-20000}" QTEST_FUNCTION_TIMEOUT=36000000 \
    tests/support/run_test.sh "$PWD/build/dev/soak" tst_screen_soak \
    "$PWD/tests/terminal/screen/with_screen.sh" "$PWD/build/dev/bin/tst_screen_soak"
