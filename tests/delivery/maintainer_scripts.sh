#!/usr/bin/env bash
# What the maintainer scripts of the packages do: an upgrade neither stops nor restarts the terminal,
# which may be selling; it restarts the office, which loses nothing.
# usage: maintainer_scripts.sh SOURCE_DIR
set -u
scripts="$1/packaging/debian/terminal"
# shellcheck source=tests/support/boundary.sh
. "$(dirname "${BASH_SOURCE[0]}")/../support/boundary.sh"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
mkdir "$work/bin"
for program in adduser systemctl deb-systemd-invoke touch chown chmod; do
    printf '#!/bin/sh\necho "%s $*" | sed "s# run/# /run/#"\n' "$program" > "$work/bin/$program"
done
# Of the groups, "render" does not exist here.
# shellcheck disable=SC2016 # for the program
printf '#!/bin/sh\n[ "$2" != render ]\n' > "$work/bin/getent"
chmod 755 "$work/bin"/*

enabled=rivo-terminal.service
# calls STATE SCRIPT ARGUMENT...: what the script calls; STATE is "running" where systemd runs. The
# folders of the system are in the work folder.
calls() {
    local state="$1" script="$2"
    shift 2
    rm -rf "${work:?}/run" "${work:?}/etc"
    mkdir -p "$work/run" "$work/etc/systemd/system/multi-user.target.wants"
    : > "$work/etc/systemd/system/multi-user.target.wants/$enabled"
    [ "$state" != running ] || mkdir -p "$work/run/systemd/system"
    sed -E "s#(^|[[:blank:]])/(run|etc)/#\1\2/#g; s# > /dev/null( \|\| true)?\$#\1#" \
        "$scripts/$script" > "$work/$script"
    (cd "$work" && PATH="$work/bin:$PATH" sh "./$script" "$@" 2>&1)
    echo "exit code $?"
    [ -e "$work/etc/systemd/system/multi-user.target.wants/$enabled" ] || echo "not enabled"
}

user="adduser --quiet --system --group --home /var/lib/rivo-terminal --no-create-home --gecos Ticketing terminal rivo-terminal
adduser --quiet rivo-terminal video
adduser --quiet rivo-terminal input
adduser --quiet rivo-terminal lp
adduser --quiet rivo-terminal dialout
adduser --quiet rivo-terminal audio"
reload="systemctl --system daemon-reload"
expect "the first installation makes the user, and starts nothing" "$user
$reload
exit code 0" "$(calls running postinst configure)"
expect "an upgrade leaves a file that the running terminal sees" "$user
$reload
touch /run/rivo-terminal.upgraded
exit code 0" "$(calls running postinst configure 1.0.0)"
expect "an upgrade in a system that does not run" "$user
exit code 0" "$(calls resting postinst configure 1.0.0)"
expect "an upgrade that was broken off" "exit code 0" "$(calls running postinst abort-upgrade 1.0.1)"
expect "before an upgrade nothing stops" "exit code 0" "$(calls running prerm upgrade 1.0.1)"
expect "after an upgrade of the old version" "$reload
exit code 0" "$(calls running postrm upgrade 1.0.1)"
expect "a removal stops the terminal" "deb-systemd-invoke stop rivo-terminal.service
exit code 0" "$(calls running prerm remove)"
expect "a removal in a system that does not run" "exit code 0" "$(calls resting prerm remove)"
expect "after a removal" "$reload
exit code 0" "$(calls running postrm remove)"
expect "a purge" "$reload
exit code 0
not enabled" "$(calls running postrm purge)"
expect "scripts of the package" "conffiles postinst postrm prerm" "$(cd "$scripts" && echo *)"

# All scripts were seen; a trigger or another file would be a further way to restart it.
expect "words that would restart a terminal" "" \
    "$(grep -nE '(try-)?restart |reload-or|systemctl.*(start|kill)' "$scripts"/*)"

scripts="$1/packaging/debian/office"
enabled=rivo-office@1.service
user="adduser --quiet --system --group --home /nonexistent --no-create-home --gecos Office of a fleet rivo-office"
expect "the first installation of the office makes the user, and starts nothing" "$user
$reload
exit code 0" "$(calls running postinst configure)"
expect "an upgrade restarts the programs of the office that run" "$user
$reload
deb-systemd-invoke try-restart rivo-office@*.service rivo-office-web.service
exit code 0" "$(calls running postinst configure 1.0.0)"
expect "an upgrade of the office that was broken off" "exit code 0" "$(calls running postinst abort-upgrade 1.0.1)"
expect "before an upgrade of the office nothing stops" "exit code 0" "$(calls running prerm upgrade 1.0.1)"
expect "a removal stops the office" "deb-systemd-invoke stop rivo-office@*.service rivo-office-web.service
exit code 0" "$(calls running prerm remove)"
expect "after a removal of the office" "$reload
exit code 0" "$(calls running postrm remove)"
expect "a purge of the office" "$reload
exit code 0
not enabled" "$(calls running postrm purge)"
no_failure
