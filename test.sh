#!/usr/bin/env bash
# Sets up, builds and runs all tests, or those that ctest's options name: ./test.sh -R '^tst_journal$'
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
# shellcheck source=scripts/setup.sh
. scripts/setup.sh

# shellcheck disable=SC2086 # a list of names
need_packages $packages_to_test
build_preset dev
run_tests dev "$@"
