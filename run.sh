#!/usr/bin/env bash
# Prints the selection grid of the shipped feed as a terminal would show it. Arguments go to
# rivo-grid instead: ./run.sh --help, ./run.sh FEED --columns 4, ./run.sh check FEED
set -euo pipefail
invoked_from="$PWD"
cd "$(dirname "${BASH_SOURCE[0]}")"
root="$PWD"
# shellcheck source=packaging/setup.sh
. packaging/setup.sh

# shellcheck disable=SC2086 # a list of names
need_packages $packages_to_run
build_preset release

[ "$#" -gt 0 ] || set -- "$root/Terminal/feeds/hill-valley.json"
cd "$invoked_from"
exec "$root/build/release/bin/rivo-grid" "$@"
