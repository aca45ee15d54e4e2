#!/usr/bin/env bash
# Where run.sh opens its window: on a screen that answers, otherwise nowhere, with the reason.
# usage: screen_to_use.sh SOURCE_DIR
set -u
source_dir="$1"
# shellcheck source=tests/support/boundary.sh
. "$(dirname "${BASH_SOURCE[0]}")/../support/boundary.sh"

# shellcheck source=scripts/screen.sh
. "$source_dir/scripts/screen.sh"
folder="$(mktemp -d -p /tmp)" # the path of a socket is at most 107 bytes
trap 'rm -rf "$folder"' EXIT
ask=". '$source_dir/scripts/screen.sh'; screen_to_use 2>&1"
asked() { env -u QT_QPA_PLATFORM -u DISPLAY -u WAYLAND_DISPLAY -u XDG_RUNTIME_DIR "$@" bash -euo pipefail -c "$ask"; }

# A socket that is there, and packages that are or are not installed, whatever this machine has.
python3 -c 'import socket, sys; socket.socket(socket.AF_UNIX).bind(sys.argv[1])' "$folder/wayland-0"
for state in installed not-installed; do
    mkdir "$folder/$state"
    printf '#!/bin/sh\necho %s\n' "$state" > "$folder/$state/dpkg-query"
    chmod +x "$folder/$state/dpkg-query"
done
with_plugin="PATH=$folder/installed:$PATH" without_plugin="PATH=$folder/not-installed:$PATH"
wayland="WAYLAND_DISPLAY=wayland-0"
here="XDG_RUNTIME_DIR=$folder"
cannot="WAYLAND_DISPLAY=wayland-0 cannot be used (no socket of that name, or no package qtwayland5); drawing a picture instead."
# No server has this number: it is the highest that its port leaves room for.
stale="DISPLAY=:59535"

expect "says nothing where there is no screen" "" "$(asked)"
expect "uses an X server that answers" "xcb" \
    "$(on_own_screen env -u WAYLAND_DISPLAY bash -euo pipefail -c "$ask")"
expect "uses what the user has chosen" "eglfs" \
    "$(asked QT_QPA_PLATFORM=eglfs "$stale" "$wayland" "$here" "$with_plugin")"
expect "opens no window without a screen" "" "$(asked QT_QPA_PLATFORM=offscreen)"
expect "uses the X server before Wayland" "xcb" \
    "$(on_own_screen env "$wayland" "$here" "$with_plugin" bash -euo pipefail -c "$ask")"
expect "names an X server that does not answer" \
    "No X server answers at DISPLAY=:59535; drawing a picture instead." "$(asked "$stale")"
expect "uses Wayland alone" "wayland" "$(asked "$wayland" "$here" "$with_plugin")"
expect "uses Wayland by the path of its socket" "wayland" \
    "$(asked "WAYLAND_DISPLAY=$folder/wayland-0" "$with_plugin")"
expect "uses Wayland where X does not answer" "wayland" \
    "$(asked "$stale" "$wayland" "$here" "$with_plugin")"
expect "needs Qt's plugin for Wayland" "$cannot" "$(asked "$wayland" "$here" "$without_plugin")"
expect "needs the socket of Wayland" "$cannot" \
    "$(asked "$wayland" "XDG_RUNTIME_DIR=/nowhere" "$with_plugin")"

no_failure
