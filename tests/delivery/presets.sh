#!/usr/bin/env bash
# The README and CONTRIBUTING.md name the configure presets, all of them and no others.
# usage: presets.sh SOURCE_DIR CMAKE
set -u
source_dir="$1" cmake="$2"
# shellcheck source=tests/support/boundary.sh
. "$(dirname "${BASH_SOURCE[0]}")/../support/boundary.sh"

# names: the names between backquotes in what is read, one a line.
# shellcheck disable=SC2016 # backquotes of Markdown
names() { grep -o '`[a-z0-9-]*`' | tr -d '`' | sort; }

presets="$("$cmake" -S "$source_dir" --list-presets | sed -n 's/^  "\([^"]*\)".*/\1/p' | sort)"
expect "CONTRIBUTING.md lists the presets" "$presets" \
    "$(sed -n '/^| Preset /,/^$/p' "$source_dir/CONTRIBUTING.md" | cut -d'|' -f2 | names)"
expect "the README lists the presets" "$presets" \
    "$(sed -n '/^The configure presets/,/^$/p' "$source_dir/README.md" | names)"

no_failure
