#!/usr/bin/env bash
# Runs a command in a copy of the tracked files as a newcomer may have them: an ordinary user's, in a
# folder that only this user can enter, with a blank and an umlaut in its name, under umask 077. Root
# runs it as the user `nobody`. The copy stays, so that the next command finds what this one has built.
#
#   scripts/newcomer.sh COMMAND [ARGUMENT...]        for example ./test.sh
#   scripts/newcomer.sh --root COMMAND [ARGUMENT...] as root, in the same folder
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
as_user=()
if [ "$(id -u)" -eq 0 ]; then
    as_user=(runuser -u nobody --)
fi
if [ "${1:-}" = --root ]; then
    [ "$(id -u)" -eq 0 ] || { echo "Only root runs a command as root" >&2; exit 2; }
    as_root=true
    shift
else
    as_root=false
fi

umask 077
place="/var/tmp/rivo für $(id -un) $(pwd | cksum | cut -d' ' -f1)"
clone="$place/clone ü"
if [ ! -d "$place" ]; then
    mkdir "$place"
    [ "${#as_user[@]}" -eq 0 ] || chown nobody: "$place"
fi
# The build stays. Files that have not changed keep their times, so that little is built again.
# shellcheck disable=SC2016 # for the started shell
git ls-files -z | tar -c --null --files-from=- | "${as_user[@]}" bash -c '
    mkdir -p "$1/clone ü" "$1/tmp" "$1/home"
    cd "$1/clone ü"
    find . -mindepth 1 -maxdepth 1 ! -name build -exec rm -rf {} +
    tar -x' - "$place"

in_place=(env -C "$clone" HOME="$place/home" TMPDIR="$place/tmp" "$@")
if ! $as_root; then
    exec "${as_user[@]}" "${in_place[@]}"
fi
status=0
"${in_place[@]}" || status=$?
chown -R nobody: "$place"
exit "$status"
