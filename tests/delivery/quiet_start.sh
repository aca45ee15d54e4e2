#!/usr/bin/env bash
# A program that loads the library and does nothing with it writes nothing and leaves no file.
# usage: quiet_start.sh RIVO_GRID
set -u
folder="$(mktemp -d)"
cd "$folder" || exit 1
output="$("$1" --version 2>&1)"
left="$(ls -A "$folder")"
rm -rf "$folder"
[[ "$output" =~ ^rivo-grid\ [0-9.]+$ ]] || { echo "FAIL: printed: $output"; exit 1; }
[ -z "$left" ] || { echo "FAIL: left behind: $left"; exit 1; }
