#!/usr/bin/env bash
# Every QML file of the source folder passes Qt's own linter, unqualified names included. The examples
# also use modules and types that it does not know; they are run instead.
# usage: qmllint.sh QMLLINT SOURCE_DIR IMPORT_PATH...
set -u
qmllint="$1" source_dir="$2"
shift 2
imports=()
for path in "$@"; do
    imports+=(-I "$path")
done
cd "$source_dir" || exit 1
mapfile -d '' files < <(find . \( -name build -o -name .git -o -path ./examples \) -prune -o -name '*.qml' -print0)
[ "${#files[@]}" -gt 0 ] || { echo "There is no QML file"; exit 1; }

# Some complaints leave the exit code at 0, so silence is what counts.
complaints() { "$qmllint" --check-unqualified "${imports[@]}" "$@" 2>&1 || echo "exit code $?"; }

# The linter finds the module: it reports these two mistakes and no third.
wrong="$(mktemp --suffix=.qml)"
trap 'rm -f "$wrong"' EXIT
cat > "$wrong" << 'EOT'
import QtQuick 2.15
import Rivo.GuiCore 1.0

Item {
    property PassengerTypesModel grid
    property int columns: grid.numberOfColumns
    property int tiles: grid.count
    property int type: PassengerTypesModel.PT_ADULT
    property int misspelt: grid.numberOfColumn
    property int unknown: PassengerTypesModel.PT_STUDENT
}
EOT
found="$(complaints "$wrong" | grep -oE 'Property "[A-Za-z_]+" not found on type "[A-Za-z]+"')"
expected='Property "numberOfColumn" not found on type "PassengerTypesModel"
Property "PT_STUDENT" not found on type "PassengerTypesModel"'
[ "$found" = "$expected" ] || {
    echo "The linter does not find the module; it reports:"
    complaints "$wrong"
    exit 1
}

report="$(complaints "${files[@]}")"
[ -z "$report" ] && exit 0
printf '%s\n' "$report"
exit 1
