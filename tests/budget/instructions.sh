#!/usr/bin/env bash
# Instructions per operation of the library's hot paths, in an optimised build, against the figures
# that are stored beside this script: more than 3 % away from one of them fails. What is counted is
# every instruction of the process, Qt's and the C library's included.
#
#   tests/budget/instructions.sh [amd64|armhf]            compares; amd64 without argument
#   tests/budget/instructions.sh [amd64|armhf] --accept   stores what was counted
set -euo pipefail
export LC_ALL=C # decimal points
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
# shellcheck source=scripts/setup.sh
. scripts/setup.sh

architecture=amd64
case "${1:-}" in
    amd64 | armhf)
        architecture="$1"
        shift
        ;;
esac
[ "$*" = "" ] || [ "$*" = --accept ] || {
    sed -n 's/^#   //p' tests/budget/instructions.sh >&2
    exit 2
}

operations=50 # half of what hot_paths is prepared for
if [ "$architecture" = amd64 ]; then
    # shellcheck disable=SC2086 # a list of names
    need_packages $packages_for_budgets
    build=build/budget
    runner=()
    # Callgrind prints "Collected : N".
    counter=(valgrind --tool=callgrind --callgrind-out-file=/dev/null)
else
    # shellcheck disable=SC2086 # a list of names
    need_packages $packages_for_armhf_budgets
    build=build/budget-armhf
    runner=(qemu-arm -L "$PWD/build/armhf-sysroot")
    # The plugin prints "Instructions: N".
    counter=("${runner[@]}" -plugin "$PWD/$build/count_instructions.so")
fi
hot_paths() {
    build_variant "${build#build/}" "$@" -DGUICORE_BUILD_TESTS=ON -DGUICORE_BUILD_QML=OFF \
        -DGUICORE_BUILD_TERMINAL=OFF -DGUICORE_BUILD_FEED=OFF -DGUICORE_BUILD_TOOLS=OFF --target hot_paths
}
if [ "$architecture" = amd64 ]; then
    hot_paths release
else
    hot_paths armhf -DCMAKE_CXX_FLAGS= -DCMAKE_CXX_FLAGS_RELEASE="-O3 -DNDEBUG" # as in preset release
    quietly "Building the counter" g++ -std=c++17 -Wall -Wextra -Wpedantic -Werror -O2 -shared -fPIC \
        -o "$build/count_instructions.so" tests/budget/count_instructions.cpp
fi

counts="$PWD/$build/counts"
rm -rf "$counts"
mkdir -p "$counts/home"

# count NAME OPERATIONS: the instructions of a process that performs so many, to a file of these names.
# Without the caller's environment, and with functions bound and hashes seeded as always.
count() {
    local said="$counts/$1-$2.log"
    env -i PATH="$PATH" HOME="$counts/home" LC_ALL=C TZ=UTC QT_HASH_SEED=0 LD_BIND_NOW=1 \
        "${counter[@]}" "$PWD/$build/bin/hot_paths" "$1" "$2" > "$said" 2>&1 || {
        cat "$said" >&2
        return 1
    }
    sed -n -E 's/^.*(Collected|Instructions) ?: ([0-9]+)$/\2/p' "$said" > "$counts/$1-$2"
}

paths="$("${runner[@]}" "$build/bin/hot_paths")"
for path in $paths; do
    count "$path" "$operations" &
    first=$!
    count "$path" "$((2 * operations))"
    wait "$first"
    echo "$path $((($(cat "$counts/$path-$((2 * operations))") - $(cat "$counts/$path-$operations")) / operations))"
done > "$counts/measured.txt"

stored="tests/budget/instructions-$architecture.txt"
status=0
awk -f tests/budget/judge.awk "$stored" "$counts/measured.txt" || status=$?
[ $# -gt 0 ] || exit "$status"
{
    sed -n '/^#/p' "$stored"
    cat "$counts/measured.txt"
} > "$counts/accepted.txt"
cp "$counts/accepted.txt" "$stored"
echo "Stored what was counted in $stored"
