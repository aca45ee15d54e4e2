#!/usr/bin/env bash
# The tests of the library, the core library, the feed readers and the tools on 32-bit ARM, Debian's
# armhf, in an emulator. What they compare with is the same as on this machine.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
# shellcheck source=scripts/setup.sh
. scripts/setup.sh

# shellcheck disable=SC2086 # a list of names
need_packages $packages_to_test_armhf
build_preset armhf
run_tests armhf
