#!/usr/bin/env bash
# Lines and branches of the library, the core library and the feed readers that the C++ tests reach:
# prints the figures, writes build/coverage/report/index.html and fails below what is promised.
# Edges that only an exception or a failed assertion takes and code that the compiler adds are not
# counted.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/setup.sh
. scripts/setup.sh
# shellcheck source=scripts/variants.sh
. scripts/variants.sh

# shellcheck disable=SC2086 # a list of names
need_packages $packages_for_coverage
build_preset dev
rm -f build/coverage/bin/tst_* # of an older build, perhaps
build_preset coverage
find build/coverage -name '*.gcda' -delete
# The tests of build/dev with the shared libraries of this build; those that link a static library are
# built here with it. Tests of built files are left out.
changes="s#ENVIRONMENT \"#&LD_LIBRARY_PATH=$PWD/build/coverage/lib;#"
for program in build/coverage/bin/tst_*; do
    changes+=";s#$PWD/build/dev/bin/${program##*/}\"#$PWD/$program\"#"
done
vary_tests "$PWD/build/dev" "$PWD/build/coverage/counted" "$changes"
RIVO_SOAK_DIVISOR=100 RIVO_LAYOUT_CASES=500 run_variant build/coverage/counted \
    -R '^tst_' -E '^(tst_core_library|tst_qml_.*)$'

mkdir -p build/coverage/report
status=0
gcovr -j "$(nproc)" --root . --object-directory build/coverage \
    build/coverage/GuiCore/CMakeFiles/GuiCore.dir build/coverage/Core build/coverage/Feed \
    --filter 'GuiCore/src/' --filter 'Core/' --filter 'Feed/' \
    --exclude-throw-branches --exclude-unreachable-branches \
    --exclude-branches-by-pattern '.*Q_ASSERT\(.*' \
    --fail-under-line 100 --fail-under-branch 98 \
    --html-details build/coverage/report/index.html --json build/coverage/report/coverage.json \
    --txt build/coverage/report/summary.txt --print-summary > build/coverage/report/totals.txt ||
    status=$?
cat build/coverage/report/summary.txt build/coverage/report/totals.txt
echo "Line by line: build/coverage/report/index.html"
exit "$status"
