#!/usr/bin/env bash
# The same results whatever the hash seed, locale, time zone, compiler and optimisation: runs the
# C++ tests with their golden files, and compares what the tools print byte by byte.
#
#   scripts/determinism.sh        a sample of two settings with build/dev
#   scripts/determinism.sh --all  ten hash seeds, with every pair of locale and time zone among them,
#                                 for each of g++ and clang++ at -O0 and -O3
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/setup.sh
. scripts/setup.sh

# shellcheck disable=SC2086 # a list of names
need_packages $packages_for_determinism
results="$PWD/build/determinism"
mkdir -p "$results"

# Locales in a folder of ours: the machine need not have them.
export LOCPATH="$results/locales"
for locale in de_DE tr_TR; do
    [ -d "$LOCPATH/$locale.UTF-8" ] && continue
    mkdir -p "$LOCPATH"
    quietly "localedef" localedef -i "$locale" -f UTF-8 "$LOCPATH/$locale.UTF-8"
done

# Seed, locale and time zone of each run. The seeds are those at the ends and some between; the time
# zones are 13 hours ahead and 3.5 hours behind, both with summer time.
sample="0:de_DE.UTF-8:America/St_Johns 4294967295:tr_TR.UTF-8:Pacific/Auckland"
all="0:C:Pacific/Auckland 1:de_DE.UTF-8:America/St_Johns 2:tr_TR.UTF-8:Pacific/Auckland
    3:C:America/St_Johns 42:de_DE.UTF-8:Pacific/Auckland 1000:tr_TR.UTF-8:America/St_Johns
    65537:C:Pacific/Auckland 123456789:de_DE.UTF-8:America/St_Johns
    2147483648:tr_TR.UTF-8:Pacific/Auckland 4294967295:tr_TR.UTF-8:America/St_Johns"

# print_everything BUILD: every model of every feed in every form, and the check of positions.
print_everything() {
    local bin="$1/bin" feed model format
    for feed in Terminal/feeds/*.json tests/feed/data/json/everything.json tests/feed/data/gtfs-*/; do
        for format in text json csv; do
            for model in grid basket fare-products z-reports fleet devices; do
                echo "$feed $model $format"
                "$bin/rivo-models" "$model" "$feed" --format "$format"
            done
        done
        echo "$feed check"
        "$bin/rivo-grid" check "$feed" || echo "exit code $?"
    done
}

# run_settings BUILD SETTING...: the tests and the tools' output under each setting.
expected=""
run_settings() {
    local build="$1" setting seed locale zone variant printed status=0
    shift
    for setting in "$@"; do
        IFS=: read -r seed locale zone <<< "$setting"
        variant="$results/$(basename "$build")-$seed-$locale-${zone##*/}"
        rm -rf "$variant"
        mkdir -p "$variant"
        echo "${variant##*/}:"
        (
            export RIVO_TEST_HOMES="$variant" RIVO_TEST_LOCALE="$locale" RIVO_TEST_TIME_ZONE="$zone" \
                RIVO_SOAK_DIVISOR=20 RIVO_LAYOUT_CASES=500
            QT_HASH_SEED="$seed" run_tests_in "$build" -L plain -E "$hears_qt" &&
                QT_HASH_SEED=0 run_tests_in "$build" -R "$hears_qt"
        ) || status=1
        QT_HASH_SEED="$seed" LC_ALL="$locale" TZ="$zone" print_everything "$build" \
            > "$variant/printed.txt" 2> "$variant/said.txt"
        printed="$(sha256sum < "$variant/printed.txt" | cut -d' ' -f1)"
        echo "printed $(wc -c < "$variant/printed.txt") bytes, SHA-256 ${printed:0:16}"
        [ -n "$expected" ] || expected="$printed"
        [ "$printed" = "$expected" ] || {
            echo "This is not what the first setting printed." >&2
            status=1
        }
    done
    return "$status"
}
# Qt reports a forced seed on standard error, unless it is 0: tests that compare the standard error of
# a process have that.
hears_qt='^(tst_documented_qml|tst_foreign_core|tst_rivo_grid|tst_grid_layout|tst_grid_offers|tst_rivo_models|tst_models_tickets|tst_models_values|tst_core_logging|tst_core_swap|tst_swapped_core|quiet_start|grid_document|feed_schema_agreement)$'

status=0
if [ "${1:-}" = --all ]; then
    for compiler in g++-12 clang++-14; do
        for level in -O0 -O3; do
            build="build/determinism-$compiler$level"
            # With the headers of each test alone: here a forgotten #include of a test is noticed.
            build_variant "${build#build/}" dev \
                -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="$level -DQT_FORCE_ASSERTS" \
                -DCMAKE_BUILD_TYPE=None -DGUICORE_BUILD_QML=OFF -DGUICORE_BUILD_TERMINAL=OFF \
                -DGUICORE_BUILD_BENCHMARKS=OFF -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON
            # shellcheck disable=SC2086 # a list of settings
            run_settings "$build" $all || status=1
        done
    done
else
    build_preset dev
    # shellcheck disable=SC2086 # a list of settings
    run_settings build/dev $sample || status=1
fi
[ "$status" -eq 0 ] && echo "The same results under every setting"
exit "$status"
