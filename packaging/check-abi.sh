#!/usr/bin/env bash
# Compares libGuiCore.so with the stored description of its ABI and fails on an incompatible change.
# Builds the library of a preset (default: release), or takes the file of a built target GuiCoreAbi.
# usage: packaging/check-abi.sh [PRESET | LIBRARY]
set -euo pipefail
here="$PWD"
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/setup.sh
. scripts/setup.sh
# shellcheck source=packaging/abi.sh
. packaging/abi.sh

# shellcheck disable=SC2086 # a list of names
need_packages $packages_for_abi
library="${1:-release}"
case "$library" in
    */*) library="$(cd "$here" && realpath "$library")" ;;
    *) build_abi "$library" ;;
esac
compare_abi "$library"
