#!/usr/bin/env bash
# What the plugin of the QML module shows to the outside: the libraries it needs, and no path of
# the machine that built it.
# usage: module_boundary.sh PLUGIN SOURCE_DIR BINARY_DIR
set -u
plugin="$1" source_dir="$2" binary_dir="$3"
failures=0

# expect WHAT EXPECTED ACTUAL
expect() {
    [ "$2" = "$3" ] && return 0
    printf 'FAIL: %s\n--- expected\n%s\n--- actual\n%s\n' "$1" "$2" "$3"
    failures=$((failures + 1))
}

needed="$(readelf -d "$plugin" | sed -nE 's/.*\(NEEDED\).*\[(.*)\]/\1/p' |
    grep -vE '^lib(asan|ubsan|stdc\+\+|gcc_s|m|c)\.so|^ld-linux' | sort)"
expect "needs GuiCore, Qt Core and Qt Qml" \
    "libGuiCore.so.1
libQt5Core.so.5
libQt5Qml.so.5" "$needed"

expect "exports the two symbols of a Qt plugin" \
    "qt_plugin_instance
qt_plugin_query_metadata" \
    "$(nm -DC --defined-only "$plugin" | awk '$2 == "T" { print $3 }' | grep -vE '^__?(asan|ubsan|sanitizer)' | sort)"

# Sanitizers put source paths of their own into the library.
nm -D --undefined-only "$plugin" | grep -q __asan_init && folders=() || folders=("$source_dir" "$binary_dir")
for folder in "${folders[@]}"; do
    for file in "$plugin" "$(dirname "$plugin")/plugins.qmltypes" "$(dirname "$plugin")/qmldir"; do
        expect "$file holds no path of the machine that built it" "0" "$(grep -caF "$folder/" "$file")"
    done
done

[ "$failures" -eq 0 ]
