#!/usr/bin/env bash
# The C++ tests of a build, which is build/dev unless another one is named, under valgrind memcheck:
# no error and no block lost, directly or through another one, but those of scripts/valgrind.supp.
# What tries very many cases tries fewer.
#
#   scripts/valgrind.sh [BUILD]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/setup.sh
. scripts/setup.sh
# shellcheck source=scripts/variants.sh
. scripts/variants.sh

# shellcheck disable=SC2086 # a list of names
need_packages $packages_for_valgrind
build="$(realpath -m "${1:-build/dev}")"
[ $# -gt 0 ] || build_preset dev

logs="$PWD/build/valgrind/logs"
rm -rf "$logs"
mkdir -p "$logs"
memcheck='"valgrind" "--tool=memcheck" "--error-exitcode=99" "--leak-check=full"'
memcheck+=' "--show-leak-kinds=definite,indirect" "--errors-for-leak-kinds=definite,indirect"'
memcheck+=' "--num-callers=40" "--gen-suppressions=all" "--child-silent-after-fork=yes"'
memcheck+=" \"--suppressions=$PWD/scripts/valgrind.supp\" \"--log-file=$logs/\\1.log\""
vary_tests "$build" "$PWD/build/valgrind/memcheck" "
    s#^add_test(\\[=\\[\\(tst_[a-z_]*\\)\\]=\\] #&$memcheck #
    s#TIMEOUT \"[0-9]*\"#TIMEOUT \"1200\"#
    s#RIVO_SOAK_DIVISOR=[0-9]*\\|RIVO_LAYOUT_CASES=[0-9]*#RIVO_IGNORED=#g"

export QT_ENABLE_REGEXP_JIT=0 RIVO_SOAK_DIVISOR=200 RIVO_LAYOUT_CASES=20 QTEST_FUNCTION_TIMEOUT=1200000
status=0
run_variant build/valgrind/memcheck -R '^tst_' -E '^tst_qml' || status=$?
grep -L 'ERROR SUMMARY: 0 errors' "$logs"/*.log | xargs -r cat
programs="$(find "$logs" -name '*.log' | wc -l)"
clean="$(grep -l 'ERROR SUMMARY: 0 errors' "$logs"/*.log | wc -l)"
echo "memcheck: $clean of $programs programs without an error or a lost block"
[ "$clean" -eq "$programs" ] || status=1
exit "$status"
