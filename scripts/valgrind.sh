#!/usr/bin/env bash
# The C++ tests of build/dev under valgrind memcheck: no error and no block lost, directly or through
# another one, but those of scripts/valgrind.supp. What tries very many cases tries fewer. Without
# options of ctest all of them: takes half an hour.
#
#   scripts/valgrind.sh [CTEST OPTION...]      for example -R '^tst_core_'
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/setup.sh
. scripts/setup.sh

# shellcheck disable=SC2086 # a list of names
need_packages $packages_for_valgrind
build_preset dev

homes="$PWD/build/valgrind"
rm -rf "$homes"
export RIVO_TEST_HOMES="$homes" RIVO_TEST_RUNNER="$PWD/scripts/memcheck.sh"
export QT_ENABLE_REGEXP_JIT=0 RIVO_SOAK_DIVISOR=200 RIVO_LAYOUT_CASES=20 QTEST_FUNCTION_TIMEOUT=1200000
status=0
run_tests dev -L plain --timeout 1200 "$@" || status=$?
mapfile -d '' logs < <(find "$homes" -name memcheck.log -print0)
clean=0
for log in "${logs[@]}"; do
    if grep -q 'ERROR SUMMARY: 0 errors' "$log"; then
        clean=$((clean + 1))
    else
        cat "$log"
    fi
done
echo "memcheck: $clean of ${#logs[@]} programs without an error or a lost block"
[ "$clean" -eq "${#logs[@]}" ] || status=1
exit "$status"
