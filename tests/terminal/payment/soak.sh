#!/usr/bin/env bash
# Makes 5,000 payments by card, or COUNT, through faults of the card terminal and restarts, then
# compares its books, the journal and the reports of the shifts.
# usage: tests/terminal/payment/soak.sh [COUNT [SEED]]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../../.."
export RIVO_CARD_PAYMENTS="${1:-5000}" RIVO_CARD_SEED="${2:-0}" QTEST_FUNCTION_TIMEOUT=7200000
exec build/dev/bin/tst_card_soak
