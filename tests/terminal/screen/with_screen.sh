#!/usr/bin/env bash
# Runs a program on an X server of its own, drawn in the process: a window as on the terminal.
# usage: with_screen.sh PROGRAM [ARGUMENT...]
set -eu
# shellcheck source=scripts/screen.sh
. "$(dirname "${BASH_SOURCE[0]}")/../../../scripts/screen.sh"
export QT_QPA_PLATFORM=xcb LIBGL_ALWAYS_SOFTWARE=1 XDG_RUNTIME_DIR="$TMPDIR/runtime"
mkdir -p "$XDG_RUNTIME_DIR"
chmod 700 "$XDG_RUNTIME_DIR"
on_own_screen "$@"
