#!/usr/bin/env bash
# The units of the packages: systemd rates how much of the machine they can reach, and the terminal
# starts with each system call refused that its unit refuses.
# usage: service_unit.sh SOURCE_DIR [TERMINAL]
set -u
source_dir="$1"
kiosk="$source_dir/packaging/kiosk"
feed="$source_dir/Terminal/feeds/coast-line.json"
terminal="${2:-}"
# shellcheck source=tests/support/boundary.sh
. "$(dirname "${BASH_SOURCE[0]}")/../support/boundary.sh"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
units="$work/units"
mkdir "$units"
sed "s#@CMAKE_INSTALL_FULL_BINDIR@/rivo-terminal#/usr/bin/true#" \
    "$kiosk/rivo-terminal.service.in" > "$units/rivo-terminal.service"
cp "$kiosk/rivo-terminal-stopped.service" "$units"
for unit in @ -web; do
    sed "s#@CMAKE_INSTALL_FULL_BINDIR@/rivo-office#/usr/bin/true#" \
        "$source_dir/packaging/office/rivo-office$unit.service.in" > "$units/rivo-office$unit.service"
done
mv "$units/rivo-office@.service" "$units/rivo-office@1.service"

# exposure UNIT: what systemd rates it, from 0 to 10; 2.5 is the most that is accepted.
exposure() {
    systemd-analyze security --offline=true --no-pager "$1" 2>&1 |
        sed -nE 's/.*Overall exposure level for [^:]*: ([0-9.]+).*/\1/p'
}
accepted() { awk -v rating="$1" 'BEGIN { print rating != "" && rating <= 2.5 ? "yes" : "no" }'; }

if [ -z "$(exposure "$units/rivo-terminal.service")" ]; then
    echo "SKIP   : service_unit() systemd-analyze rates no units here: $(systemd-analyze security \
        --offline=true "$units/rivo-terminal.service" 2>&1 | head -1)"
    exit 0
fi
for unit in rivo-terminal rivo-terminal-stopped rivo-office@1 rivo-office-web; do
    rating="$(exposure "$units/$unit.service")"
    echo "$unit.service: exposure $rating"
    expect "$unit.service is rated 2.5 or better" yes "$(accepted "$rating")"
    expect "$unit.service has no mistake" "" \
        "$(systemd-analyze verify --man=no "$units/$unit.service" 2>&1)"
done

# Without its protections the same unit is rated worse: the rating can fail.
grep -vE '^(Protect|Restrict|SystemCall|Capability|DevicePolicy|DeviceAllow)' \
    "$units/rivo-terminal.service" > "$work/rivo-terminal.service"
expect "a unit without protections is not accepted" no "$(accepted "$(exposure "$work/rivo-terminal.service")")"

# settings UNIT NAME...: what the unit sets.
settings() {
    local unit="$units/$1.service" name
    shift
    for name in "$@"; do grep "^$name=" "$unit" || echo "$name: not set"; done
}
expect "watchdog, memory, umask and restarts" "Type=notify
WatchdogSec=30
MemoryMax=384M
UMask=0077
StateDirectoryMode=0700
Restart=always
StartLimitIntervalSec=10min
StartLimitBurst=30
OnFailure=rivo-terminal-stopped.service" "$(settings rivo-terminal Type WatchdogSec MemoryMax UMask \
    StateDirectoryMode Restart StartLimitIntervalSec StartLimitBurst OnFailure)"
expect "what a vehicle has stays reachable" "DeviceAllow=char-drm rw
DeviceAllow=char-fb rw
DeviceAllow=char-input rw
DeviceAllow=char-alsa rw
DeviceAllow=char-tty* rw
DeviceAllow=char-rfcomm rw
DeviceAllow=char-usb rw
DeviceAllow=char-lp rw
RestrictAddressFamilies=AF_UNIX AF_INET AF_INET6 AF_NETLINK
PrivateNetwork: not set
PrivateDevices: not set
IPAddressDeny: not set" "$(settings rivo-terminal DeviceAllow RestrictAddressFamilies PrivateNetwork \
    PrivateDevices IPAddressDeny)"

# calls GROUP: the system calls of a group, with those of the groups in it.
calls() {
    local entry
    systemd-analyze syscall-filter --no-pager "$1" 2> /dev/null |
        sed -nE 's/^ +([-@a-z_0-9]+)$/\1/p' | while read -r entry; do
        case "$entry" in
            @*) calls "$entry" ;;
            *) echo "$entry" ;;
        esac
    done | sort -u
}

# What no filter refuses is always allowed.
allowed_calls() {
    comm -23 <(calls @system-service) <(comm -23 <(calls @privileged) <(calls @default))
}

if [ -n "$terminal" ]; then
    expect "the filter of the unit" "SystemCallFilter=@system-service
SystemCallFilter=~@privileged
SystemCallErrorNumber=EPERM" "$(settings rivo-terminal SystemCallFilter SystemCallErrorNumber)"
    mkdir -m 700 "$work/home"
    allowed="$(allowed_calls | sed 's/^/?/' | paste -sd,)"
    export HOME="$work/home" TMPDIR="$work"
    refusing=(strace -f --seccomp-bpf -qq -o "$work/calls" -e "inject=!$allowed:error=EPERM"
        -e "trace=!$allowed")
    : > "$work/owned"
    expect "a call that the unit refuses" "no" \
        "$("${refusing[@]}" chown "$(id -u)" "$work/owned" 2> /dev/null && echo yes || echo no)"
    "$source_dir/tests/terminal/screen/with_screen.sh" "${refusing[@]}" "$terminal" --feed "$feed" \
        --journal "$work/home/sales.journal" --screenshot "$work/page.png" > "$work/said" 2>&1
    expect "exit code with the refused calls" 0 "$?"
    expect "messages with the refused calls" "" "$(cat "$work/said")"
    expect "a picture with the refused calls" yes "$([ -s "$work/page.png" ] && echo yes)"
fi
no_failure
