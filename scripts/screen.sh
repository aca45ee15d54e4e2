# shellcheck shell=bash
# Sourced by run.sh and by tests: finds the screen on which a window can be opened.

# x_answers: succeeds if the X server that DISPLAY names accepts connections.
x_answers() {
    [ -n "${DISPLAY:-}" ] && timeout 10 xdpyinfo > /dev/null 2>&1
}

# wayland_answers: succeeds if WAYLAND_DISPLAY names a socket and Qt's plugin for Wayland is installed.
wayland_answers() {
    local socket="${WAYLAND_DISPLAY:-}"
    case "$socket" in
        "") return 1 ;;
        /*) ;;
        *) socket="${XDG_RUNTIME_DIR:-}/$socket" ;;
    esac
    [ -S "$socket" ] &&
        dpkg-query -W -f '${db:Status-Status}\n' qtwayland5 2> /dev/null | grep -qx installed
}

# platform_was_chosen: succeeds if the user chose a Qt platform that shows windows, as on a vehicle
# without X.
platform_was_chosen() {
    case "${QT_QPA_PLATFORM:-}" in
        "" | offscreen | minimal) return 1 ;;
    esac
}

# screen_to_use: prints the Qt platform that can open a window, or nothing. Prints one line on standard
# error if a screen is configured but cannot be used.
screen_to_use() {
    if platform_was_chosen; then
        echo "$QT_QPA_PLATFORM"
    elif x_answers; then
        echo xcb
    elif wayland_answers; then
        echo wayland
    elif [ -n "${DISPLAY:-}" ]; then
        echo "No X server answers at DISPLAY=$DISPLAY; drawing a picture instead." >&2
    elif [ -n "${WAYLAND_DISPLAY:-}" ]; then
        echo "WAYLAND_DISPLAY=$WAYLAND_DISPLAY cannot be used (no socket of that name, or no package qtwayland5);" \
            "drawing a picture instead." >&2
    fi
}

# on_own_screen COMMAND...: runs the command on an X server of its own, which shows nothing.
# xvfb-run's own files are in /tmp, for it takes no folder with a blank in its name.
on_own_screen() {
    local folder="${TMPDIR:-/tmp}"
    TMPDIR=/tmp xvfb-run -a -s "-screen 0 1280x800x24" env TMPDIR="$folder" "$@"
}
