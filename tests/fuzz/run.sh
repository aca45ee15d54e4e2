#!/usr/bin/env bash
# Fuzzing: each fuzzer runs for a while on its corpus and on what it finds worth keeping.
#
#   tests/fuzz/run.sh [SECONDS [FUZZER...]]
#
# 60 seconds of each unless SECONDS is given, and as many at a time as there are processors; FUZZER is
# json, gtfs, zip, offers, settings, zvt, models, layout, printer, position or live. What they find
# is kept in build/fuzz/corpus/FUZZER and used the next time. An input that makes a fuzzer fail is
# kept in build/fuzz/crashes, its output is
# printed, and the exit code is 1. To repeat a failure:
#
#   build/fuzz/bin/fuzz_FUZZER build/fuzz/crashes/FILE
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
# shellcheck source=scripts/setup.sh
. scripts/setup.sh

at_a_time="$(nproc)"
seconds="${1:-60}"
[[ "$seconds" =~ ^[1-9][0-9]*$ ]] || { sed -n '2,/^set/{/^#/s/^# \{0,1\}//p}' "$0"; exit 2; }
fuzzers=("${@:2}")
[ "${#fuzzers[@]}" -gt 0 ] || fuzzers=(json gtfs zip offers settings zvt models layout printer position live)

# shellcheck disable=SC2086 # a list of names
need_packages $packages_to_fuzz
build_preset fuzz

place="$PWD/build/fuzz"
mkdir -p "$place/crashes" "$place/tmp"
tests/fuzz/make_seeds.py "$place/seeds"
# Inputs are written to files: in memory where there is such a place.
TMPDIR="$place/tmp"
[ -w /dev/shm ] && TMPDIR="$(mktemp -d /dev/shm/rivo-fuzz.XXXXXX)"
export TMPDIR
trap 'rm -rf "$TMPDIR"' EXIT
# libFuzzer looks for leaks after inputs whose allocations and releases differ, and at the end.
export ASAN_OPTIONS=detect_leaks=1:quarantine_size_mb=64
export UBSAN_OPTIONS=print_stacktrace=1

# Longest input in bytes: what the formats need, no more than the operations take a moment for.
declare -A longest=([json]=8192 [gtfs]=12288 [zip]=16384 [offers]=1024 [settings]=4096 [zvt]=1024 [models]=1024 [layout]=1024 [printer]=256 [position]=4096 [live]=4096)
# fuzz NAME: one fuzzer for its time; a line of figures, or the end of its output.
fuzz() {
    local fuzzer="$1" folder seeds=() found log words=()
    for folder in "$PWD/tests/fuzz/corpus/$fuzzer" "$place/seeds/$fuzzer"; do
        [ ! -d "$folder" ] || seeds+=("$folder")
    done
    found="$place/corpus/$fuzzer"
    log="$place/$fuzzer.log"
    [ -f "tests/fuzz/$fuzzer.dict" ] && words=("-dict=tests/fuzz/$fuzzer.dict")
    case "$fuzzer" in
    json | settings) export LSAN_OPTIONS="suppressions=$PWD/tests/fuzz/qt-json.supp:print_suppressions=0" ;;
    *) export LSAN_OPTIONS= ;;
    esac
    mkdir -p "$found"
    if "$place/bin/fuzz_$fuzzer" -max_total_time="$seconds" -max_len="${longest[$fuzzer]}" \
        -timeout=30 -rss_limit_mb=2048 -print_final_stats=1 -verbosity=1 "${words[@]}" \
        -artifact_prefix="$place/crashes/$fuzzer-" "$found" "${seeds[@]}" > "$log" 2>&1; then
        awk -v fuzzer="$fuzzer" '
            / cov: / { for (i = 1; i < NF; ++i) { if ($i == "cov:") cov = $(i + 1); if ($i == "corp:") corp = $(i + 1) } }
            /stat::number_of_executed_units/ { runs = $2 }
            /stat::peak_rss_mb/ { memory = $2 }
            END { printf "%-8s %d inputs run, %d code edges reached, corpus %s, at most %d MB: no failure\n",
                         fuzzer, runs, cov, corp, memory }' "$log"
    else
        tail -60 "$log"
        echo "$fuzzer: failed; the input is in build/fuzz/crashes, the output in build/fuzz/$fuzzer.log" >&2
        return 1
    fi
}

status=0 running=0
for fuzzer in "${fuzzers[@]}"; do
    if [ "$running" -ge "$at_a_time" ]; then
        wait -n || status=1
        running=$((running - 1))
    fi
    fuzz "$fuzzer" &
    running=$((running + 1))
done
for ((; running > 0; --running)); do wait -n || status=1; done
exit "$status"
