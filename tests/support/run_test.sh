#!/usr/bin/env bash
# Runs a test in a home of its own, with nothing of the user's environment that could change its
# outcome.
# usage: run_test.sh HOMES NAME COMMAND [ARGUMENT...]
#
# RIVO_TEST_HOMES       another folder for the homes
# RIVO_TEST_LOCALE      instead of C.UTF-8
# RIVO_TEST_TIME_ZONE   instead of UTC
# RIVO_TEST_RUNNER      a program that runs the command, such as scripts/memcheck.sh
set -eu
home="${RIVO_TEST_HOMES:-$1}/$2"
shift 2
for variable in $(compgen -e); do
    case "$variable" in
        PATH | NM | READELF | LD_LIBRARY_PATH | LOCPATH | CCACHE_* | *SAN_OPTIONS | QTEST_* | RIVO_* | GUICORE_*) ;;
        QT_HASH_SEED | QT_ENABLE_REGEXP_JIT) ;;
        *) unset "$variable" 2> /dev/null || true ;;
    esac
done
# The messages of the system (LANGUAGE) are English in every locale: tests compare it.
export HOME="$home" TMPDIR="$home/tmp" QT_QPA_PLATFORM=offscreen LANGUAGE=C \
    LC_ALL="${RIVO_TEST_LOCALE:-C.UTF-8}" TZ="${RIVO_TEST_TIME_ZONE:-UTC}"
mkdir -p "$home/tmp" "$home/work"
cd "$home/work"
exec ${RIVO_TEST_RUNNER:+"$RIVO_TEST_RUNNER"} "$@"
