#!/usr/bin/env bash
# The tests under AddressSanitizer, LeakSanitizer and UBSan: no access out of bounds, no undefined
# behaviour, no leak. All tests, or those of the named folders of tests/.
#
#   scripts/sanitizers.sh [FOLDER...]      for example core terminal/sales
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/setup.sh
. scripts/setup.sh

# shellcheck disable=SC2086 # a list of names
need_packages $packages_to_test
# Tests that build projects of their own, or run no program of ours, look at the same as without
# sanitizers.
left_out='^(installed_tree|core_imported_library|core_other_macros|qmllint)$'
if [ $# -eq 0 ]; then
    build_preset asan
    run_tests asan -E "$left_out"
    exit
fi
targets=("${@/#/tests/}")
build_variant asan asan --target "${targets[@]/%//all}"
# By name, because only the preset's own build has the environment of the preset.
names="$(for folder in "${targets[@]}"; do
    ctest --test-dir "build/asan/$folder" -N | sed -n 's/^ *Test *#[0-9]*: //p'
done | paste -sd '|')"
run_tests asan -R "^($names)\$" -E "$left_out"
