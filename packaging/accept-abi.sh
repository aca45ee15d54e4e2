#!/usr/bin/env bash
# Makes the library of a preset (release if none is named) what later ones are compared with: after
# a deliberate change, and before each release, for what was added to be kept from then on.
# usage: packaging/accept-abi.sh [PRESET]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/setup.sh
. scripts/setup.sh
# shellcheck source=packaging/abi.sh
. packaging/abi.sh

# shellcheck disable=SC2086 # a list of names
need_packages $packages_for_abi
build_abi "${1:-release}"
file="$(abi_file "$library")"
describe_abi "$library" "$file"
echo "$file"
