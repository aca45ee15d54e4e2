#!/usr/bin/env bash
# An installed tree that was moved: other projects find the library in it with CMake and with
# pkg-config, its programs find what they need, and nothing in it names the machine.
# usage: installed_tree.sh SOURCE_DIR BINARY_DIR CMAKE GENERATOR COMPILER [FLAGS]
set -u
source_dir="$1" binary_dir="$2" cmake="$3" generator="$4" compiler="$5"
read -ra flags <<< "${6:-}"
# shellcheck source=tests/support/boundary.sh
. "$(dirname "${BASH_SOURCE[0]}")/../support/boundary.sh"
# shellcheck source=scripts/screen.sh
. "$source_dir/scripts/screen.sh"
unset LD_LIBRARY_PATH QML2_IMPORT_PATH
work="$(mktemp -d)"
plain="$(mktemp -d /var/tmp/rivo.XXXXXX)" # without a blank in its name
trap 'rm -rf "$work" "$plain"' EXIT

# step WHAT COMMAND...: a step that the others need.
step() {
    local what="$1"
    shift
    "$@" > "$work/log" 2>&1 && return 0
    cat "$work/log"
    echo "FAIL: $what"
    exit 1
}

step "install" env DESTDIR="$work/stage" "$cmake" --install "$binary_dir"
prefix="$(sed -n 's/^CMAKE_INSTALL_PREFIX:[A-Z]*=//p' "$binary_dir/CMakeCache.txt")"
tree="$work/somewhere else"
step "move" mv "$work/stage$prefix" "$tree"
expect "installs below the prefix alone" "" "$(find "$work/stage" -type f)"

for folder in "$source_dir" "$binary_dir" "$work"; do
    [[ "${flags[*]}" == *-fsanitize* ]] && break # sanitizers name the sources
    expect "no installed file names $folder" "" "$(grep -rlIF "$folder" "$tree")"
done
# shellcheck disable=SC2016 # $ORIGIN is the loader's
expect "no library path but a relative one" "" \
    "$(find "$tree" -type f -exec readelf -d {} + 2> /dev/null |
        sed -nE 's/.*\((RPATH|RUNPATH)\).*\[(.*)\]/\2/p' | grep -vE '^\$ORIGIN(/[^:]*)?$')"

# run_consumer PROGRAM: it works, and logs through the core library.
run_consumer() {
    local output log=' WARNING .*consumer says.*\[4, 2\]'
    output="$("$1" 2> "$work/consumer.log")"
    expect "$1 ends well" 0 "$?"
    expect "$1 uses the library" "grid 1 Single
stops 1 0 1
tile 1 1
order 0
empty 0" "$output"
    grep -qE "$log" "$work/consumer.log" || expect "$1 logs" "$log" "$(cat "$work/consumer.log")"
}

step "find_package" "$cmake" -G "$generator" -S "$source_dir/tests/delivery/consumer" -B "$work/cmake" \
    "-DCMAKE_CXX_COMPILER=$compiler" "-DCMAKE_CXX_FLAGS=${flags[*]}" "-DCMAKE_PREFIX_PATH=$tree"
step "building with CMake" "$cmake" --build "$work/cmake"
run_consumer "$work/cmake/consumer"
expect "needs the core library by its plain name" "libRIVO_ARM_QtLib.so" \
    "$(needed "$work/cmake/consumer" | grep RIVO)"

mkdir "$work/newer"
sed 's/GuiCore 1.0/GuiCore 2.0/' "$source_dir/tests/delivery/consumer/CMakeLists.txt" > "$work/newer/CMakeLists.txt"
"$cmake" -G "$generator" -S "$work/newer" -B "$work/newer/build" "-DCMAKE_CXX_COMPILER=$compiler" \
    "-DCMAKE_PREFIX_PATH=$tree" 2>&1 | grep -q 'compatible with requested version "2.0"' ||
    expect "another major version is refused" "refused" "taken"

libraries="$(dirname "$(find "$tree" -name libGuiCore.so)")"
export PKG_CONFIG_PATH="$libraries/pkgconfig"
expect "pkg-config knows the version" \
    "$(sed -n 's/^CMAKE_PROJECT_VERSION:[A-Z]*=//p' "$binary_dir/CMakeCache.txt")" \
    "$(pkg-config --modversion GuiCore)"
# What pkg-config prints is for a shell: it quotes the blank in the name of the folder.
declare -a use
eval "use=($(pkg-config --cflags --libs GuiCore))"
step "building with pkg-config" "$compiler" "${flags[@]}" -std=c++17 -Wall -Wextra \
    "$source_dir/tests/delivery/consumer/main.cpp" "${use[@]}" "-Wl,-rpath,$libraries" -o "$work/consumer"
run_consumer "$work/consumer"

# The commands of the README, in a tree whose path has no blank, for a shell splits it there.
if [ -d "$libraries/qt5/qml/Rivo/GuiCore" ]; then
    mkdir "$plain/application"
    cp "$source_dir/tests/delivery/consumer/main.cpp" "$plain/application"
    ln -s "$tree" "$plain/rivo"
    # block LANGUAGE: prints the block of the README in that language.
    block() { awk -v begin="\`\`\`$1" '/^```/ { inside = $0 == begin; next } inside' "$source_dir/README.md"; }
    block qml > "$plain/application/Main.qml"
    block sh > "$plain/application/commands"
    expect "the README has commands" 3 "$(grep -cE '^(export|g\+\+|qmllint) ' "$plain/application/commands")"
    sed -i "s#/opt/rivo/lib/#$plain/rivo${libraries#"$tree"}/#; s#^g++ #$compiler ${flags[*]} #" "$plain/application/commands"
    expect "the commands of the README say nothing" "" \
        "$(cd "$plain/application" && bash -eu commands 2>&1 || echo "exit code $?")"
    run_consumer "$plain/application/application"
fi

# The examples against the installed tree. They need its QML module, one of them KItemModels' too.
if compgen -G "$libraries/qt*/qml/Rivo/GuiCore" > /dev/null; then
    for example in "fleet-list=20 vehicles, the first: Bus 01 on Route 2" \
        "ticket-grid=3 columns, 5 for sale, 1 in the basket" \
        "sorted-view=Airport Bus 3, Castle Bus 4, Harbour Bus 1"; do
        name="${example%%=*}"
        # Debian 12 has KItemModels for Qt 5 only.
        [ "$name" = sorted-view ] && [ -d "$libraries/qt6" ] && continue
        step "configuring $name" "$cmake" -G "$generator" -S "$source_dir/examples/$name" -B "$work/$name" \
            "-DCMAKE_CXX_COMPILER=$compiler" "-DCMAKE_CXX_FLAGS=${flags[*]}" "-DCMAKE_PREFIX_PATH=$tree"
        step "building $name" "$cmake" --build "$work/$name"
        expect "$name shows" "${example#*=}" \
            "$(ASAN_OPTIONS="${ASAN_OPTIONS:-}:detect_leaks=0" QT_QUICK_BACKEND=software \
                timeout 60 "$work/$name/$name" --once 2> "$work/log" || cat "$work/log")"
    done
fi

# Each header by itself; then those of the logger's storage with any of them.
while read -r header; do
    step "<$header> by itself" "$compiler" "${flags[@]}" -std=c++17 -Wall -Wextra -Werror -x c++ \
        -fsyntax-only -include "$header" "${use[@]}" /dev/null
done < <(cd "$tree/include/guicore" && find . -name '*.h' -printf '%P\n')

# The programs, each in a folder of its own and without options that name folders.
if [ -x "$tree/bin/rivo-grid" ] && [ -d "$tree/share/rivo-terminal/feeds" ]; then # the terminal's
    "$tree/bin/rivo-grid" "$tree/share/rivo-terminal/feeds/hill-valley.json" > "$work/grid.txt"
    expect "rivo-grid prints the shipped feed" 0 "$?"
    grep -q 'Hill & Valley Buses' "$work/grid.txt" || expect "the grid" "its name" "$(cat "$work/grid.txt")"
fi
if [ -x "$tree/bin/rivo-terminal" ]; then
    export QT_QPA_PLATFORM=xcb QT_QUICK_BACKEND=software XDG_RUNTIME_DIR="$work/runtime"
    mkdir -m 700 "$XDG_RUNTIME_DIR"
    export ASAN_OPTIONS="${ASAN_OPTIONS:-}:detect_leaks=0" # Qt Quick leaks by itself
    on_own_screen "$tree/bin/rivo-terminal" --journal "$work/q.journal" \
        --screenshot "$work/sell.png" > "$work/terminal.txt" 2>&1
    expect "rivo-terminal opens the shipped feed" "0 " "$? $(cat "$work/terminal.txt")"
    [ "$(stat -c %s "$work/sell.png" 2> /dev/null || echo 0)" -gt 20000 ] ||
        expect "the picture shows a screen" "more than 20000 bytes" "$(ls -l "$work")"
fi

no_failure
