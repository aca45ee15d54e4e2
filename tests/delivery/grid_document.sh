#!/usr/bin/env bash
# The grid in docs/grid.md is what rivo-grid prints of the sample feed.
# usage: grid_document.sh RIVO_GRID SOURCE_DIR
set -u
shown="$(sed -n '/^<!-- the grid of the sample feed -->$/,/^<!-- end -->$/p' "$2/docs/grid.md" | sed '1,2d;$d' | sed '$d')"
printed="$("$1" "$2/Terminal/feeds/hill-valley.json")"
[ -n "$shown" ] && [ "$shown" = "$printed" ] && exit 0
diff <(echo "$shown") <(echo "$printed")
exit 1
