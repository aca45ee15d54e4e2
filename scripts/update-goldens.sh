#!/usr/bin/env bash
# Stores anew what tests compare with, after a deliberate change: the golden files, and the ABI of
# the library of each preset that is named. Look at what git shows before you commit it.
# usage: scripts/update-goldens.sh [PRESET]... such as release armhf
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/setup.sh
. scripts/setup.sh

# shellcheck disable=SC2086 # a list of names
need_packages $packages_to_test
build_preset dev
RIVO_UPDATE_GOLDENS=1 run_tests dev -L golden
for preset in "$@"; do
    packaging/accept-abi.sh "$preset"
done
git status --short
