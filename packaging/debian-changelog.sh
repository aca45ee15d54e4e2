#!/usr/bin/env bash
# Prints CHANGELOG.md, or the FILE that is named, as a changelog of Debian. Fails unless its latest
# release is VERSION. A release is dated noon, UTC.
# usage: packaging/debian-changelog.sh SOURCE VERSION MAINTAINER [FILE]
set -euo pipefail
source="$1" version="$2" maintainer="$3"
file="${4:-$(dirname "${BASH_SOURCE[0]}")/../CHANGELOG.md}"
suite=bookworm

reject() {
    echo "$file:$number: $1" >&2
    exit 1
}

# end_entry: the last line of an entry of Debian's.
end_entry() {
    local time
    [ -z "$date" ] && return 0
    "$has_points" || reject "a release without points before this line"
    time="$(LC_ALL=C date -u -d "$date 12:00" '+%a, %d %b %Y %T %z' 2> /dev/null)" ||
        reject "\"$date\" before this line is no date"
    printf '\n -- %s  %s\n' "$maintainer" "$time"
}

release='^## ([0-9]+\.[0-9]+\.[0-9]+) \(([0-9]{4}-[0-9]{2}-[0-9]{2})\)$'
number=0 date="" latest="" has_points=false
while IFS= read -r line || [ -n "$line" ]; do
    number=$((number + 1))
    if [[ "$line" =~ $release ]]; then
        end_entry
        [ -z "$date" ] || echo
        has_points=false
        date="${BASH_REMATCH[2]}"
        latest="${latest:-${BASH_REMATCH[1]}}"
        printf '%s (%s) %s; urgency=medium\n\n' "$source" "${BASH_REMATCH[1]}" "$suite"
    elif [ "$line" = "## Unreleased" ] && [ -z "$date" ]; then
        continue
    elif [[ "$line" = "#"* ]] && [ "$number" -gt 1 ]; then
        reject "\"$line\" is neither \"## Unreleased\" at the top nor \"## VERSION (YYYY-MM-DD)\""
    elif [ -n "$date" ] && [[ "$line" = "- "* ]]; then
        has_points=true
        printf '  * %s\n' "${line#- }"
    elif [ -n "$date" ] && [[ "$line" = "  "* ]] && "$has_points"; then
        printf '    %s\n' "${line#  }"
    elif [ -n "$date" ] && [ -n "$line" ]; then
        reject "\"$line\" is no point of a release"
    fi
done < "$file"
[ "$latest" = "$version" ] || reject "the latest release is \"$latest\", not $version"
end_entry
