#!/usr/bin/env bash
# Every text of the screen is in the translations, translated, and nothing else is.
# usage: translations.sh LUPDATE I18N_FOLDER
set -u
folder="$(mktemp -d)"
trap 'rm -rf "$folder"' EXIT
status=0

cp "$2"/*.ts "$folder" || exit 1
"$2/update.sh" "$1" "$folder" || { echo "FAIL: lupdate"; exit 1; }
for updated in "$folder"/*.ts; do
    diff -u "$2/$(basename "$updated")" "$updated" || status=1
done
[ "$status" -eq 0 ] || echo "FAIL: build the target update-translations, then translate"
# An empty form of a plural counts as a translation to lupdate.
grep -nE 'type="|<(translation|numerusform)></' "$2"/*.ts && { echo "FAIL: not translated"; status=1; }
exit "$status"
