#!/usr/bin/env bash
# Prints many tickets through faults of the printer, its connection and the terminal, and counts
# what is on paper. Each seed is another series of faults.
# usage: scripts/printer-soak.sh [TICKETS [SEED...]]; 10000 tickets with seeds 1 and 2
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/setup.sh
. scripts/setup.sh
tickets="${1:-10000}"
seeds=("${@:2}")
[ "${#seeds[@]}" -gt 0 ] || seeds=(1 2)

build_preset dev
for seed in "${seeds[@]}"; do
    echo "Seed $seed"
    QT_QPA_PLATFORM=offscreen QTEST_FUNCTION_TIMEOUT=3600000 \
        RIVO_SOAK_TICKETS="$tickets" RIVO_SOAK_SEED="$seed" build/dev/bin/tst_printer_soak
done
