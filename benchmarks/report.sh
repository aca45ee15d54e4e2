#!/usr/bin/env bash
# Measures the models on this machine, writes the tables and plots of docs/performance.md, and prints
# the targets. Fails if one is missed. With a RESULT.json of before, nothing is built or measured.
set -euo pipefail
invoked_from="$PWD"
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=packaging/setup.sh
. packaging/setup.sh

result="$PWD/build/bench/benchmarks.json"
if [ "$#" -gt 0 ]; then
    result="$(cd "$invoked_from" && realpath "$1")"
else
    # shellcheck disable=SC2086 # a list of names
    need_packages $packages_for_benchmarks
    quietly "Configuring preset bench" cmake --preset bench
    quietly "Building the benchmarks" cmake --build --preset bench --target bench-models
    # In another order each time, so that what else the machine does at a moment does not stay with
    # one of those that are compared.
    quietly "Measuring" build/bench/bin/bench-models --benchmark_repetitions=3 \
        --benchmark_enable_random_interleaving=true \
        --benchmark_out_format=json --benchmark_out="$result"
fi
benchmarks/report.py write "$result" docs/performance.md docs/images/performance
