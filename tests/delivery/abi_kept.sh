#!/usr/bin/env bash
# The built library keeps the ABI that applications were built with.
# usage: abi_kept.sh LIBGUICORE LIBGUICORE_AS_ONE_UNIT SOURCE_DIR
set -u
library="$1" one_unit="$2" source_dir="$3"
# shellcheck source=tests/support/boundary.sh
. "$(dirname "${BASH_SOURCE[0]}")/../support/boundary.sh"

exported() { "${NM:-nm}" -D --defined-only "$1" | cut -d' ' -f3 | LC_ALL=C sort; }
expect "what is described exports what the library does" "$(exported "$library")" "$(exported "$one_unit")"
"$source_dir/packaging/check-abi.sh" "$one_unit" || expect "keeps the ABI" yes no

no_failure
