#!/usr/bin/env bash
# What our core library exports: what it declares, the shared logger, and nothing else.
# usage: core_boundary.sh LIBRARY
set -u
# shellcheck source=tests/support/boundary.sh
. "$(dirname "${BASH_SOURCE[0]}")/../support/boundary.sh"

exported="$("${NM:-nm}" -DC --defined-only "$1" | cut -d' ' -f3- | grep -vE '^__(asan|odr_asan|ubsan|sanitizer)')"
foreign="$(echo "$exported" |
    grep -vE '^(vtable for |typeinfo (name )?for |guard variable for |non-virtual thunk to )?(el|rivo::core|QJsonWrapper)::')"
expect "exports its operations, the logger and nothing else" "" "$foreign"
for symbol in "el::base::elStorage" "vtable for el::LogDispatchCallback" \
    "typeinfo for el::LogDispatchCallback" "vtable for rivo::core::SettingsConfig" \
    "rivo::core::SettingsConfig::staticMetaObject"; do
    echo "$exported" | grep -qxF "$symbol" || expect "exports $symbol" yes no
done

no_failure
