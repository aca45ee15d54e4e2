#!/usr/bin/env bash
# Everything that checks this repository, one script after the other: some 70 minutes on two
# processors. Goes on after a failure; the exit code is 1 if there was any.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
# shellcheck source=scripts/setup.sh
. scripts/setup.sh
# shellcheck source=scripts/steps.sh
. scripts/steps.sh
minutes=60

step "Missing packages" install_all_packages
report "Format" scripts/format-check.sh
report "Tests of an ordinary user" scripts/newcomer.sh ./test.sh
[ "$(id -u)" -ne 0 ] || report "Tests of root in another user's folder" tests_of_root
report "A fleet and its office" scripts/newcomer.sh ./test-office.sh --vehicles 100
report "Coverage" scripts/newcomer.sh scripts/coverage.sh
report "Linters" scripts/lint.sh
settings_and_memory
sanitizers_and_mutants
report "Tests with Qt 6" scripts/qt6.sh
report "Tests on 32-bit ARM" ./test-armhf.sh
packages_and_fuzzers
report "Power cuts of an emulated board" ./test-image.sh --cuts 3
report "Instructions on 32-bit ARM" tests/budget/instructions.sh armhf
[ "$((failures + reported))" -eq 0 ]
