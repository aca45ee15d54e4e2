#!/usr/bin/env bash
# Builds everything but the terminal with Qt 6 and runs the tests, or those that ctest's options name:
# scripts/qt6.sh -R '^tst_listmodel$'
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/setup.sh
. scripts/setup.sh

# shellcheck disable=SC2086 # a list of names
need_packages $packages_for_qt6
build_preset qt6
run_tests qt6 "$@"
