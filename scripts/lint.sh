#!/usr/bin/env bash
# What tools see in the sources of the product: cppcheck, clang-tidy with clang's analyzer, clazy.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/setup.sh
. scripts/setup.sh

# shellcheck disable=SC2086 # a list of names
need_packages $packages_to_lint
scripts/cppcheck.sh
configure_variant tidy tidy
quietly "clang-tidy and clazy" cmake --build build/tidy -- -k 0 # all findings at once
echo "clang-tidy and clazy: clean"
