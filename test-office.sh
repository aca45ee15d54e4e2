#!/usr/bin/env bash
# Proves that nothing is lost or doubled between the vehicles and the office: simulated vehicles with
# real journals and outboxes, a Mosquitto and a PostgreSQL of their own in a temporary folder, and two
# programs of the office. All of them are killed at random, and the network of the vehicles delays
# packets and cuts connections. At the end every record and every sum of the journals is compared with
# the database.
# usage: ./test-office.sh [--vehicles N] [--records N] [--seconds S] [--seed N] [--no-kills] [--release]
#
#   --vehicles  how many (20)
#   --records   of each vehicle, about (150)
#   --seconds   how long they sell, and things are killed (40); 0: they sell first, then all is sent
#   --seed      of what is sold and killed (1)
#   --no-kills  nothing is killed, delayed or cut: for measurements
#   --release   programs as shipped, in build/office
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
# shellcheck source=scripts/setup.sh
. scripts/setup.sh

vehicles=20 records=150 seconds=40 seed=1 kills=true build=dev
while [ $# -gt 0 ]; do
    case "$1" in
        --vehicles) vehicles="$2" && shift 2 ;;
        --records) records="$2" && shift 2 ;;
        --seconds) seconds="$2" && shift 2 ;;
        --seed) seed="$2" && shift 2 ;;
        --no-kills) kills=false && shift ;;
        --release) build=office && shift ;;
        *)
            sed -n 's/^# usage: //p' "$0" >&2
            exit 2
            ;;
    esac
done

# shellcheck disable=SC2086 # a list of names
need_packages $packages_to_test
if [ "$build" = office ]; then
    build_variant office release -DGUICORE_BUILD_TESTS=ON --target rivo-office fleet_trial
else
    build_variant dev dev --target rivo-office fleet_trial
fi
bin="$PWD/build/$build/bin"
postgres="$(find /usr/lib/postgresql/*/bin -name postgres | sort -V | tail -n 1)"
mosquitto="$(PATH="$PATH:/usr/sbin" command -v mosquitto)"

folder="$(mktemp -d /tmp/rivo-office-XXXXXX)"
mkdir "$folder/database" "$folder/journals" "$folder/log"
# A port that is free now; the range of ports that the system gives to connections begins above it.
port=$((20000 + RANDOM % 10000))
while (exec 3<> "/dev/tcp/127.0.0.1/$port") 2> /dev/null; do port=$((port + 1)); done
vehicle_port="$port"
if "$kills"; then
    vehicle_port=$((port + 1))
    while (exec 3<> "/dev/tcp/127.0.0.1/$vehicle_port") 2> /dev/null; do vehicle_port=$((vehicle_port + 1)); done
fi
cat > "$folder/mosquitto.conf" << EOF
user $(id -un)
listener $port 127.0.0.1
allow_anonymous true
message_size_limit 1048576
max_packet_size 1050000
max_queued_messages 10000
persistence true
persistence_location $folder/
EOF

# PostgreSQL refuses to run as root.
as_server=()
if [ "$(id -u)" -eq 0 ]; then
    as_server=(setpriv --reuid=nobody --regid=nogroup --clear-groups)
    chmod 755 "$folder"
    chown nobody "$folder/database"
fi

declare -A pids=()

# start NAME COMMAND...: runs a program in the background.
start() {
    local name="$1"
    shift
    "$@" >> "$folder/log/$name" 2>&1 &
    pids[$name]=$!
}

start_one() {
    local first
    case "$1" in
        broker) start broker "$mosquitto" -c "$folder/mosquitto.conf" ;;
        database)
            start database "${as_server[@]}" "$postgres" -D "$folder/database/data" -k "$folder/database" \
                -c listen_addresses=
            ;;
        office-*)
            start "$1" "$bin/rivo-office" serve --broker 127.0.0.1 --port "$port" --database postgres \
                --database-host "$folder/database" --database-user rivo
            ;;
        network) start network tests/office/bad_network.py "$vehicle_port" "$port" "$seconds" "$seed" ;;
        fleet-*)
            first=$((vehicles * ${1#fleet-} / fleets))
            start "$1" "$bin/fleet_trial" run "$folder/journals" "$first" \
                $((vehicles * (${1#fleet-} + 1) / fleets - first)) "$records" "$seconds" "$seed" "$vehicle_port"
            ;;
    esac
}

is_running() { kill -0 "${pids[$1]}" 2> /dev/null; }

# shellcheck disable=SC2317 # at the end
finish() {
    local name
    # The database ends at once, but in order: it has memory that outlives it.
    [ -z "${pids[database]:-}" ] || kill -QUIT "${pids[database]}" 2> /dev/null || true
    for name in "${!pids[@]}"; do
        [ "$name" = database ] || kill -KILL "${pids[$name]}" 2> /dev/null || true
    done
    wait 2> /dev/null || true
    rm -rf "$folder"
}
trap finish EXIT

fail() {
    tail -n 5 "$folder"/log/* >&2
    echo "$1" >&2
    exit 1
}

quietly "initdb" "${as_server[@]}" "${postgres%/*}/initdb" -D "$folder/database/data" -U rivo -A trust \
    -E UTF8 --locale=C

# libmosquitto waits with select(), which knows no more than 1024 files of a process; a vehicle has 8.
fleets=$(((vehicles + 99) / 100))
fleets=$((fleets < 4 ? 4 : fleets))
fleets=$((fleets < vehicles ? fleets : vehicles))
servers=(broker database office-0 office-1)
! "$kills" || servers+=(network)
all=("${servers[@]}")
for ((fleet = 0; fleet < fleets; ++fleet)); do all+=("fleet-$fleet"); done
for name in "${all[@]}"; do start_one "$name"; done

fleets_run() {
    local fleet
    for ((fleet = 0; fleet < fleets; ++fleet)); do
        is_running "fleet-$fleet" && return 0
    done
    return 1
}

# keep_all: starts again what ended without being killed by this script. A server of the database does
# not start while a process of the one before is left.
keep_all() {
    local name
    for name in "${servers[@]}"; do
        is_running "$name" || start_one "$name"
    done
}

if [ "$seconds" -eq 0 ]; then
    for ((fleet = 0; fleet < fleets; ++fleet)); do
        until grep -q sends "$folder/log/fleet-$fleet"; do
            is_running "fleet-$fleet" || fail "the vehicles do not sell"
            sleep 0.1
        done
    done
fi
began=$(date +%s%N)
RANDOM=$seed
killed=0
deadline=$((SECONDS + seconds + 600))
stop=$((SECONDS + seconds))
while fleets_run; do
    [ "$SECONDS" -lt "$deadline" ] || fail "not all records arrived in time"
    if [ "$kills" = true ] && [ "$SECONDS" -lt "$stop" ]; then
        some=(broker database "office-$((RANDOM % 2))" "fleet-$((RANDOM % fleets))")
        name="${some[RANDOM % 4]}"
        if is_running "$name"; then
            kill -KILL "${pids[$name]}"
            wait "${pids[$name]}" 2> /dev/null || true
            killed=$((killed + 1))
            sleep "0.$((RANDOM % 10))"
            start_one "$name"
        fi
        sleep "1.$((RANDOM % 10))"
    else
        sleep 0.2
    fi
    keep_all
done
took=$((($(date +%s%N) - began) / 1000000))
for ((fleet = 0; fleet < fleets; ++fleet)); do
    wait "${pids[fleet-$fleet]}" || fail "vehicles of fleet-$fleet failed"
done

if "$kills"; then
    kill -TERM "${pids[network]}"
    wait "${pids[network]}" || true
    cat "$folder/log/network"
fi
status=0
result="$("$bin/fleet_trial" compare "$folder/journals" "$vehicles" "$folder/database" postgres rivo)" || status=$?
count="$(sed -n 's/.* vehicles, \([0-9]*\) records.*/\1/p' <<< "$result")"
echo "$killed processes killed; $((took / 1000)).$((took / 100 % 10)) s, $((count * 1000 / took)) records per second"
echo "$result"
exit "$status"
