#!/usr/bin/env bash
# The grid that the README shows is the one that ./run.sh prints.
# usage: readme_grid.sh RIVO_GRID SOURCE_DIR
set -u
shown="$(awk '/^```/ { inside = !inside; if (!inside) exit; next } inside' "$2/README.md")"
printed="$("$1" "$2/Terminal/feeds/hill-valley.json")"
[ -n "$shown" ] && [ "$shown" = "$printed" ] && exit 0
diff <(echo "$shown") <(echo "$printed")
exit 1
