#!/usr/bin/env bash
# Runs a program on the X server that is there, in its process: a window as on the terminal.
# usage: with_screen.sh PROGRAM [ARGUMENT...]
set -u
export QT_QPA_PLATFORM=xcb LIBGL_ALWAYS_SOFTWARE=1 XDG_RUNTIME_DIR="$TMPDIR/runtime"
mkdir -p "$XDG_RUNTIME_DIR"
chmod 700 "$XDG_RUNTIME_DIR"
exec "$@"
