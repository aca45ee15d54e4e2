#!/usr/bin/env bash
# clang-tidy as preset tidy calls it: clang-tidy.sh OPTION... SOURCE -- COMPILER OPTION...
# Checks look at Qt's headers too, which takes longer than our sources do, so that these come to it
# joined in one file per target. clang's analyzer, its warnings of what is unused and two checks look
# at the main file alone: to them, they come one by one. What moc writes is not ours to judge.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
arguments=("$@")
for ((separator = 0; separator < $#; ++separator)); do
    [ "${arguments[separator]}" != -- ] || break
done
source="${arguments[separator - 1]}"
options=("${arguments[@]:0:separator-1}")
command=("${arguments[@]:separator}")
[[ "$source" != */mocs_compilation.cpp ]] || exit 0

judge() { clang-tidy --quiet --config-file="$root/.clang-tidy" "${options[@]}" "$@" "${command[@]}"; }
if [[ "$source" = */Unity/* ]]; then
    mapfile -t sources < <(sed -n 's/^#include "\(.*\)"$/\1/p' "$source")
    own='-*,clang-diagnostic-*,misc-unused-using-decls,misc-unused-alias-decls'
    own+=',clang-analyzer-*,-clang-analyzer-cplusplus.NewDeleteLeaks'
    # Some functions it would follow for a minute, so that its limit is lower than usual (225000).
    judge --checks="$own" "${sources[@]}" \
        --extra-arg=-Xclang --extra-arg=-analyzer-config --extra-arg=-Xclang --extra-arg=max-nodes=40000
    judge --checks='-clang-analyzer-*' "$source" \
        --header-filter="^$root/(GuiCore|GuiCoreQml|Core|Feed|Program|Terminal|tools)/"
else
    judge "$source"
fi
