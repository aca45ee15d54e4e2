#!/usr/bin/env bash
# Stores the description of the ABI of a preset's library (default: release). Run it after a
# deliberate change, and before each release, so that additions are protected from then on.
# usage: packaging/accept-abi.sh [PRESET]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/setup.sh
. scripts/setup.sh

# shellcheck disable=SC2086 # a list of names
need_packages $packages_for_abi
build_packaged_library "${1:-release}"
python3 packaging/abi.py write "$library" packaging/abi
