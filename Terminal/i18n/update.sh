#!/usr/bin/env bash
# Brings the translations in FOLDER up to date with the texts of the sources, without line numbers
# and without texts that are gone. English has the plural forms only.
# usage: update.sh LUPDATE FOLDER
set -eu
program="$1"
folder="$2"
terminal="$(dirname "$(dirname "$(realpath "$0")")")"

# update LANGUAGE OPTION...
update() {
    local language="$1"
    shift
    "$program" -silent -no-obsolete -locations none -extensions cpp,h,qml \
        -source-language en -target-language "$language" "$@" \
        "$terminal"/{app,health,live,position,drivers,sales,payment,fleet,office,ticket,printer,qml} \
        -ts "$folder/rivo-terminal_$language.ts"
}
update de
update en -pluralonly
