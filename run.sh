#!/usr/bin/env bash
# Opens the demo of the terminal with the shipped feed. Without a screen that answers it renders the Sell page into
# a picture instead, prints where that is, and prints the selection grid. Arguments go to rivo-grid:
# ./run.sh --help, ./run.sh FEED --columns 4, ./run.sh check FEED
set -euo pipefail
invoked_from="$PWD"
cd "$(dirname "${BASH_SOURCE[0]}")"
root="$PWD"
# shellcheck source=scripts/setup.sh
. scripts/setup.sh
# shellcheck source=scripts/screen.sh
. scripts/screen.sh

# shellcheck disable=SC2086 # a list of names
need_packages $packages_to_run
build_preset release
bin="$root/build/release/bin"
feed="$root/Terminal/feeds/hill-valley.json"

if [ "$#" -gt 0 ]; then
    cd "$invoked_from"
    exec "$bin/rivo-grid" "$@"
fi
screen="$(screen_to_use)"
if [ -n "$screen" ]; then
    QT_QPA_PLATFORM="$screen" exec "$bin/rivo-terminal" --demo --feed "$feed"
fi
picture="$root/build/release/sell.png"
rm -f "$picture"
journal="$(mktemp -d)"
trap 'rm -rf "$journal"' EXIT
QT_QPA_PLATFORM=xcb quietly "Rendering the Sell page" \
    on_own_screen "$bin/rivo-terminal" --demo --feed "$feed" \
    --journal "$journal/sales.journal" --screenshot "$picture"
echo "$picture"
"$bin/rivo-grid" "$feed"
