#!/usr/bin/env bash
# Checks the form of all tracked files and changes none: the layout of C++ (clang-format), the shell
# scripts (shellcheck) and the spelling (codespell). Runs the checks that are named, or all of them.
# The hooks of .pre-commit-config.yaml call it.
# usage: scripts/format-check.sh [clang-format | shellcheck | codespell]...
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# tracked PATTERN...: the tracked files that are there, each ended by a zero byte.
tracked() {
    git ls-files -z -- "$@" | while IFS= read -r -d '' file; do
        [ ! -f "$file" ] || printf '%s\0' "$file"
    done
}

check() {
    case "$1" in
        clang-format) tracked '*.cpp' '*.h' | xargs -0 clang-format --dry-run --Werror ;;
        shellcheck) tracked '*.sh' .ci/run | xargs -0 shellcheck -x ;;
        codespell) tracked . | xargs -0 codespell ;; # .codespellrc has its options
        *)
            echo "There is no check \"$1\": clang-format, shellcheck and codespell are the checks." >&2
            return 1
            ;;
    esac
}

[ $# -gt 0 ] || set -- clang-format shellcheck codespell
status=0
for name in "$@"; do
    if check "$name"; then echo "$name: clean"; else status=1; fi
done
exit "$status"
