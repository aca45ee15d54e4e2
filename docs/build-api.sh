#!/usr/bin/env bash
# Makes HTML pages of the C++ interface in build/api and prints the file of the first page. Fails if
# Doxygen warns about the headers. A getter, setter, property or change signal needs no comment of its
# own: the comment of its class documents it.
# usage: docs/build-api.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/setup.sh
. scripts/setup.sh
output=build/api

# shellcheck disable=SC2086 # a list of names
need_packages $packages_for_api
rm -rf "$output"
mkdir -p "$output"
{
    cat docs/Doxyfile
    echo "OUTPUT_DIRECTORY = $output"
    echo "WARN_LOGFILE = $output/warnings"
} > "$output/Doxyfile"
quietly "Doxygen" doxygen "$output/Doxyfile"

member='^[^ ]+ (warning|error): Member '
undocumented=' of class [A-Za-z:]+ is not documented\.$'
if grep -vE -e "${member}[a-z][A-Za-z]*\(\) const \(function\)$undocumented" \
    -e "$member"'set[A-Z][A-Za-z]*\(.*\) \(function\)'"$undocumented" \
    -e "${member}[a-z][A-Za-z]*Changed\(.*\) \(signal\)$undocumented" \
    -e "${member}[a-z][A-Za-z]* \(property\)$undocumented" "$output/warnings" | sort -u | grep .; then
    echo "Doxygen warns about the headers" >&2
    exit 1
fi
[ -f "$output/html/classPassengerTypesModel.html" ]
echo "$output/html/index.html"
