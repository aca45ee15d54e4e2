#!/usr/bin/env bash
# What tools see in the sources of the product: cppcheck, clang-tidy with clang's analyzer, clazy.
#
#   scripts/lint.sh                 all sources, some ten minutes on two processors
#   scripts/lint.sh --recent COUNT  for clang-tidy and clazy those that the last COUNT commits changed;
#                                   all sources where the history is shorter
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/setup.sh
. scripts/setup.sh

# recent_sources COUNT: the sources of the product that the last COUNT commits changed, in themselves
# or in the header of their name, as ninja calls what they compile to.
recent_sources() {
    local file
    git diff --name-only "HEAD~$1" -- Core GuiCore GuiCoreQml Feed Office Program Terminal tools |
        sed -nE 's/(_p)?\.(cpp|h)$/.cpp/p' | sort -u | while read -r file; do
        [ ! -f "$file" ] || echo "$PWD/$file^"
    done
}

sources=()
if [ "${1:-}" = --recent ] && git rev-parse -q --verify "HEAD~${2:-1}" > /dev/null; then
    mapfile -t sources < <(recent_sources "${2:-1}")
    [ "${#sources[@]}" -gt 0 ] || sources=(help) # none of the product: nothing to build
fi
# shellcheck disable=SC2086 # a list of names
need_packages $packages_to_lint
scripts/cppcheck.sh
configure_variant tidy tidy
quietly "clang-tidy and clazy" cmake --build build/tidy -- -k 0 "${sources[@]}" # all findings at once
echo "clang-tidy and clazy: clean (${#sources[@]} recent sources, 0 = all)"
