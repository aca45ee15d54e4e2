#!/usr/bin/env bash
# A test sees nothing of the user's environment but PATH and what is meant for tests.
# usage: test_environment.sh RUN_TEST
set -u
run_test="$1"
# shellcheck source=tests/support/boundary.sh
. "$(dirname "${BASH_SOURCE[0]}")/../support/boundary.sh"
folder="$(mktemp -d)"
trap 'rm -rf "$folder"' EXIT

# seen VARIABLE...: the environment and the folder of a test that is started with these.
seen() {
    # shellcheck disable=SC2016 # for the started shell
    env -i PATH="$PATH" "$@" "$run_test" "$folder/a home" its_name \
        bash -c 'env | grep -vE "^(PATH|SHLVL|_|PWD)=" | sort; pwd; ls -d "$TMPDIR"'
}
users=(HOME=/nowhere TMPDIR=/nowhere DISPLAY=:1 WAYLAND_DISPLAY=wayland-0 XDG_DATA_HOME=/nowhere
    LANG=de_DE.UTF-8 LC_NUMERIC=de_DE.UTF-8 LANGUAGE=de TZ=Asia/Tokyo QT_SCALE_FACTOR=3
    QT_LOGGING_RULES='*=true' CXXFLAGS=-Wrong CMAKE_PREFIX_PATH=/nowhere MAKEFLAGS=-n 'ODD=1
2')
place="$folder/a home/its_name"
expect "a home of its own and no setting of the user" \
    "HOME=$place
LANGUAGE=C
LC_ALL=C.UTF-8
QT_QPA_PLATFORM=offscreen
TMPDIR=$place/tmp
TZ=UTC
$place/work
$place/tmp" "$(seen "${users[@]}")"

place="$folder/elsewhere/its_name"
expect "what is meant for tests" \
    "ASAN_OPTIONS=detect_leaks=0
HOME=$place
LANGUAGE=C
LC_ALL=POSIX
QT_HASH_SEED=7
QT_QPA_PLATFORM=offscreen
RIVO_LAYOUT_CASES=5
RIVO_TEST_HOMES=$folder/elsewhere
RIVO_TEST_LOCALE=POSIX
RIVO_TEST_TIME_ZONE=Asia/Tokyo
TMPDIR=$place/tmp
TZ=Asia/Tokyo
$place/work
$place/tmp" \
    "$(seen "${users[@]}" RIVO_TEST_HOMES="$folder/elsewhere" RIVO_TEST_LOCALE=POSIX \
        RIVO_TEST_TIME_ZONE=Asia/Tokyo RIVO_LAYOUT_CASES=5 QT_HASH_SEED=7 ASAN_OPTIONS=detect_leaks=0)"

printf '#!/bin/sh\necho ran "$@"\n' > "$folder/runner"
chmod +x "$folder/runner"
expect "a program that runs the test's" "ran env a b" \
    "$(RIVO_TEST_RUNNER="$folder/runner" "$run_test" "$folder" its_name env a b)"

no_failure
