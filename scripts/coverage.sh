#!/usr/bin/env bash
# Lines and branches of the library, the core library and the feed readers that the C++ tests reach:
# prints the figures, writes build/coverage/report/index.html and fails below what is promised.
# Edges that only an exception or a failed assertion takes and code that the compiler adds are not
# counted.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/setup.sh
. scripts/setup.sh

# shellcheck disable=SC2086 # a list of names
need_packages $packages_for_coverage
build_preset dev
rm -f build/coverage/bin/tst_* # of an older build, perhaps
build_variant coverage dev -DGUICORE_BUILD_QML=OFF -DGUICORE_BUILD_TERMINAL=OFF \
    -DGUICORE_BUILD_BENCHMARKS=OFF -DCMAKE_CXX_FLAGS_DEBUG= \
    -DCMAKE_CXX_FLAGS="--coverage -O0 -fprofile-update=atomic" \
    --target GuiCore RivoCore tests/feed/all tests/tools/all tst_core_faults tst_core_settingsfile
find build/coverage -name '*.gcda' -delete
# Tests that link one of our static libraries are built with the counted one. The others are those of
# build/dev with the counted shared libraries.
own="^($(cd build/coverage/bin && printf '%s|' tst_*)tst_core_library)\$"
export RIVO_SOAK_DIVISOR=100 RIVO_LAYOUT_CASES=500
run_tests_in build/coverage -R "$own" -E '^tst_core_library$'
LD_LIBRARY_PATH="$PWD/build/coverage/lib" run_tests dev -L plain -E "$own"

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
