#!/usr/bin/env bash
# CPU and memory of the terminal with all parts of a vehicle live: a printer and a card terminal that
# are programs, a receiver of satellites at a pseudo terminal, and a server whose 2,000 vehicles all
# move and are asked for every second. Prints the share of one core and the memory, minute by minute.
# usage: scripts/parts-soak.sh [MINUTES [PAGE [VEHICLES]]]; 5 minutes, page sell, 2000 vehicles
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/setup.sh
. scripts/setup.sh
minutes="${1:-5}" page="${2:-sell}" vehicles="${3:-2000}"

# shellcheck disable=SC2086 # a list of names
need_packages $packages_to_run python3
build_variant release release --target rivo-terminal virtual-printer
folder="$(mktemp -d)"
started=()
trap '[ "${#started[@]}" -eq 0 ] || kill "${started[@]}" 2> /dev/null; rm -rf "$folder"' EXIT

# start NAME COMMAND...: runs a command until the end of this script, its output in FOLDER/NAME.
start() {
    local name="$1"
    shift
    "$@" > "$folder/$name" 2> "$folder/$name.errors" < /dev/null &
    started+=("$!")
}

# port_in NAME: the port that is in FOLDER/NAME; waits for it.
port_in() {
    local try
    for ((try = 0; try < 100; ++try)); do
        grep -q '^port ' "$folder/$1" 2> /dev/null && break
        sleep 0.1
    done
    sed -n 's/^port //p' "$folder/$1"
}

start printer build/release/bin/virtual-printer --tcp 0 --paper "$folder"
start cards Terminal/simulators/virtual-card-terminal --port 0 --books "$folder/books.jsonl"
start surroundings python3 tests/terminal/surroundings.py "$folder" "$vehicles"
printer="$(port_in printer)" cards="$(port_in cards)" server="$(port_in port)"
cat > "$folder/terminal.conf" << CONFIG
{
  "format": "rivo-terminal", "version": 1, "vehicle": "4711",
  "printer": { "type": "escpos", "tcp": { "host": "127.0.0.1", "port": $printer } },
  "cardTerminal": { "type": "zvt", "host": "127.0.0.1", "port": $cards },
  "position": { "type": "nmea", "device": "$folder/receiver" },
  "vehicles": { "type": "gtfs-realtime", "url": "http://127.0.0.1:$server/", "interval": 1 }
}
CONFIG
QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software HOME="$folder" start terminal \
    build/release/bin/rivo-terminal --feed Terminal/feeds/coast-line.json --page "$page" \
    --config "$folder/terminal.conf" --journal "$folder/sales.journal"
terminal="${started[-1]}"

# ticks: processor time of the terminal so far, in ticks of the kernel.
ticks() { awk '{ print $14 + $15 }' "/proc/$terminal/stat"; }
memory() { awk -v name="$1:" '$1 == name { print $2 }' "/proc/$terminal/status"; }

sleep 10 # the start does not count
before="$(ticks)" first="$before" hertz="$(getconf CLK_TCK)"
for ((minute = 1; minute <= minutes; ++minute)); do
    sleep 60
    kill -0 "$terminal" || { cat "$folder/terminal.errors"; exit 1; }
    now="$(ticks)"
    awk -v minute="$minute" -v used="$((now - before))" -v hertz="$hertz" -v memory="$(memory VmRSS)" \
        'BEGIN { printf "minute %d: %.1f %% of a core, %.1f MB\n", minute, used / hertz / 60 * 100, memory / 1024 }'
    before="$now"
done
awk -v used="$((before - first))" -v hertz="$hertz" -v minutes="$minutes" -v most="$(memory VmHWM)" \
    -v page="$page" -v vehicles="$vehicles" -v requests="$(stat -c %s "$folder/requests")" 'BEGIN {
        printf "page %s, %d messages of %d vehicles: %.1f %% of a core in %d minutes, %.1f MB at most\n",
               page, requests, vehicles, used / hertz / 60 / minutes * 100, minutes, most / 1024 }'
uptime
