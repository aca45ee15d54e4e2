#!/usr/bin/env bash
# Compares libGuiCore.so with the ABI that applications were built with: as the packages of a preset
# have it (release if none is named), or a library that is built already, with debug information.
# usage: packaging/check-abi.sh [PRESET | LIBRARY]
set -euo pipefail
here="$PWD"
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/setup.sh
. scripts/setup.sh

# shellcheck disable=SC2086 # a list of names
need_packages $packages_for_abi
library="${1:-release}"
case "$library" in
    */*) library="$(cd "$here" && realpath "$library")" ;;
    *) build_packaged_library "$library" ;;
esac
python3 packaging/abi.py compare "$library" packaging/abi || {
    echo "Applications built with the last release may break. packaging/accept-abi.sh accepts it:" \
        "then raise the major version, which is in the library's name." >&2
    exit 1
}
