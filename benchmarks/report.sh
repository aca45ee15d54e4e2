#!/usr/bin/env bash
# Measures the models on this machine, writes the tables and plots of docs/performance.md, and prints
# the targets. Fails if one is missed. With results of before, RESULT.json..., nothing is built or
# measured.
set -euo pipefail
invoked_from="$PWD"
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/setup.sh
. scripts/setup.sh

if [ "$#" -gt 0 ]; then
    results=()
    for result in "$@"; do
        results+=("$(cd "$invoked_from" && realpath "$result")")
    done
else
    # shellcheck disable=SC2086 # a list of names
    need_packages $packages_for_benchmarks
    build_variant bench release -DGUICORE_BUILD_BENCHMARKS=ON --target bench-models
    # Each operation in a process of its own, because the heap that others leave changes what it costs;
    # and in several, because addresses differ, in every other one in reverse order. The medians
    # count. Peers that are in the tables alone need fewer.
    bench=build/bench/bin/bench-models
    mapfile -t operations < <("$bench" --benchmark_list_tests 2> /dev/null | cut -d/ -f1 | sort -u)
    rm -rf build/bench/results
    mkdir build/bench/results
    for run in 1 2 3 4 5 6 7 8; do
        peers="[a-z]+"
        options=()
        [ "$run" -le 2 ] || peers="(ours|baseline|refill)"
        [ $((run % 2)) -eq 1 ] || options+=(--last-first)
        for operation in "${operations[@]}"; do
            results+=("$PWD/build/bench/results/$operation-$run.json")
            quietly "Measuring" "$bench" "--benchmark_filter=^$operation/$peers/" "${options[@]}" \
                --benchmark_out_format=json --benchmark_out="${results[-1]}"
        done
    done
fi
benchmarks/report.py write docs/performance.md docs/images/performance "${results[@]}"
