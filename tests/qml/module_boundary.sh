#!/usr/bin/env bash
# What the plugin of the QML module shows to the outside: the libraries it needs, and no path of
# the machine that built it.
# usage: module_boundary.sh PLUGIN SOURCE_DIR BINARY_DIR QT_MAJOR_VERSION
set -u
plugin="$1" source_dir="$2" binary_dir="$3" qt="$4"
# shellcheck source=tests/support/boundary.sh
. "$(dirname "${BASH_SOURCE[0]}")/../support/boundary.sh"

expect "needs GuiCore, Qt Core and Qt Qml" \
    "libGuiCore.so.1
libQt${qt}Core.so.$qt
libQt${qt}Qml.so.$qt" "$(needed "$plugin")"

# With Qt 6 one has a version, and the function that registers the types is exported too.
expect "exports the two symbols of a Qt plugin" \
    "qt_plugin_instance
qt_plugin_query_metadata" \
    "$("${NM:-nm}" -DC --defined-only "$plugin" | awk '$2 == "T" { print $3 }' |
        grep -vE '^(__?(asan|ubsan|sanitizer)|qml_register_types_Rivo_GuiCore\(\)$)' | sed 's/_v2$//' | sort)"

folder="$(dirname "$plugin")"
expect_no_paths "$plugin" "$source_dir" "$binary_dir" \
    "$plugin" "$folder/plugins.qmltypes" "$folder/qmldir"

no_failure
