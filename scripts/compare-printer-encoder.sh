#!/usr/bin/env bash
# Compares the bytes of our ESC/POS encoder with those of an encoder that is not ours: the package
# receipt-printer-encoder of npm. Without npm, or without the package, nothing is compared.
# usage: scripts/compare-printer-encoder.sh [PRESET]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
preset="${1:-dev}"
place="$PWD/build/other-encoder"
package=@point-of-sale/receipt-printer-encoder@4.0.1

for program in npm node; do
    command -v "$program" > /dev/null || { echo "skipped: there is no $program"; exit 0; }
done
mkdir -p "$place"
(cd "$place" && npm install --no-audit --no-fund --ignore-scripts --no-save "$package") > "$place/npm.log" 2>&1 ||
    { echo "skipped: npm cannot install $package, see $place/npm.log"; exit 0; }
cmake --build "build/$preset" --target encoder_bytes > "$place/build.log" || { cat "$place/build.log"; exit 1; }
QT_QPA_PLATFORM=offscreen "build/$preset/bin/encoder_bytes" > "$place/ours"
NODE_PATH="$place/node_modules" node tests/terminal/printer/other_encoder.cjs "$place/ours"
