#!/usr/bin/env bash
# The packages' changelog has the points of CHANGELOG.md.
# usage: debian_changelog.sh SOURCE_DIR VERSION
set -u
convert="$1/packaging/debian-changelog.sh" version="$2"
# shellcheck source=tests/support/boundary.sh
. "$(dirname "${BASH_SOURCE[0]}")/../support/boundary.sh"
file="$(mktemp)"
trap 'rm -f "$file"' EXIT

# converted LINE...: a changelog of these lines, and the messages about it.
converted() {
    printf '%s\n' "$@" > "$file"
    "$convert" bus 2.1.0 "Maker <maker@example.org>" "$file" 2>&1 | sed "s#^$file#FILE#"
}

"$convert" rivo-guicore "$version" "Maker <maker@example.org>" > "$file" ||
    expect "the latest release of CHANGELOG.md is that of the project" "$version" "another"
expect "begins with the latest release" "rivo-guicore ($version) bookworm; urgency=medium" "$(head -1 "$file")"

newest=("## 2.1.0 (2026-12-01)" "" "- One" "  goes on." "- Two.")
expect "an entry for each release, none for what is not released" \
    "bus (2.1.0) bookworm; urgency=medium

  * One
    goes on.
  * Two.

 -- Maker <maker@example.org>  Tue, 01 Dec 2026 12:00:00 +0000

bus (2.0.0) bookworm; urgency=medium

  * First.

 -- Maker <maker@example.org>  Sat, 29 Feb 2020 12:00:00 +0000" \
    "$(converted "# Changelog" "" "Text." "" "## Unreleased" "" "- Later." "" "${newest[@]}" "" \
        "## 2.0.0 (2020-02-29)" "" "- First.")"

expect "another version is rejected" 'FILE:3: the latest release is "2.0.0", not 2.1.0' \
    "$(converted "# Changelog" "## 2.0.0 (2026-12-01)" "- One." | tail -1)"
expect "no release is rejected" 'FILE:1: the latest release is "", not 2.1.0' "$(converted "# Changelog")"
expect "another heading is rejected" \
    'FILE:2: "## 2.1 (2026-12-01)" is neither "## Unreleased" at the top nor "## VERSION (YYYY-MM-DD)"' \
    "$(converted "# Changelog" "## 2.1 (2026-12-01)" "- One.")"
expect "a late Unreleased is rejected" \
    'FILE:7: "## Unreleased" is neither "## Unreleased" at the top nor "## VERSION (YYYY-MM-DD)"' \
    "$(converted "# Changelog" "${newest[@]}" "## Unreleased" | tail -1)"
expect "another line is rejected" 'FILE:7: "Text." is no point of a release' \
    "$(converted "# Changelog" "${newest[@]}" "Text." | tail -1)"
expect "a release without points is rejected" 'FILE:3: a release without points before this line' \
    "$(converted "# Changelog" "## 2.1.0 (2026-12-01)" "## 2.0.0 (2026-11-01)" "- One." | tail -1)"
expect "a date that is none is rejected" 'FILE:3: "2026-02-30" before this line is no date' \
    "$(converted "# Changelog" "## 2.1.0 (2026-02-30)" "- One." | tail -1)"

no_failure
