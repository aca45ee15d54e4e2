#!/usr/bin/env bash
# The manual pages have what the programs print with --help. With RIVO_UPDATE_GOLDENS set, as
# scripts/update-goldens.sh sets it, the pages are stored anew.
# usage: manual_pages.sh FOLDER PROGRAM...
set -u
pages="$1"
shift
# shellcheck source=tests/support/boundary.sh
. "$(dirname "${BASH_SOURCE[0]}")/../support/boundary.sh"
export QT_QPA_PLATFORM=offscreen COLUMNS=80

for program in "$@"; do
    page="$pages/${program##*/}.1"
    # Under its name alone: the help begins with what the program was called by.
    made="$( (exec -a "${program##*/}" "$program" --help) | awk -f "$pages/manual.awk")"
    [ -z "${RIVO_UPDATE_GOLDENS:-}" ] || printf '%s\n' "$made" > "$page"
    difference="$(diff -u "$page" - <<< "$made")" || expect "${page##*/} is what --help prints" "" "$difference"
done

no_failure
