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
    # its benchmarks repeated in random order, because the processor is not always equally fast; and
    # in several processes, because addresses differ. Peers that are in the tables alone need one.
    bench=build/bench/bin/bench-models
    mapfile -t operations < <("$bench" --benchmark_list_tests 2> /dev/null | cut -d/ -f1 | sort -u)
    rm -rf build/bench/results
    mkdir build/bench/results
    for run in 1 2 3; do
        peers="[a-z]+"
        [ "$run" -eq 1 ] || peers="(ours|baseline|refill)"
        for operation in "${operations[@]}"; do
            results+=("$PWD/build/bench/results/$operation-$run.json")
            quietly "Measuring" "$bench" "--benchmark_filter=^$operation/$peers/" \
                --benchmark_repetitions=5 --benchmark_enable_random_interleaving=true \
                --benchmark_out_format=json --benchmark_out="${results[-1]}"
        done
    done
fi
benchmarks/report.py write docs/performance.md docs/images/performance "${results[@]}"
