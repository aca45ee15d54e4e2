# shellcheck shell=bash disable=SC2034 # the lists are used by those who source this
# Sourced by run.sh, test.sh and all other scripts: packages, configuration and build on Debian 12.
# A step prints nothing on success and its whole output on failure.

packages_to_run="g++ cmake ninja-build qtbase5-dev qtpositioning5-dev qtdeclarative5-dev
    qtdeclarative5-dev-tools qtquickcontrols2-5-dev qttools5-dev qttools5-dev-tools
    libeasyloggingpp-dev libcsv-dev libzip-dev libqt5sql5-sqlite libqt5sql5-psql libsqlite3-dev libssl-dev libqrencode-dev
    libqt5serialport5-dev qtmultimedia5-dev libqt5multimedia5-plugins libmosquitto-dev libmicrohttpd-dev libprotobuf-dev protobuf-compiler zlib1g-dev
    libqt5svg5 qml-module-qtqml qml-module-qtquick2 qml-module-qtquick-window2 qml-module-qtquick-controls2
    qml-module-qtquick-templates2 qml-module-qtlocation qml-module-qtpositioning
    xvfb xauth x11-utils libgl1-mesa-dri fonts-dejavu-core"
packages_to_test="$packages_to_run binutils libbenchmark-dev python3-jsonschema libqt5svg5-dev
    qml-module-qttest qml-module-org-kde-kitemmodels pkg-config openssl e2fsprogs gpsd gpsd-clients mosquitto postgresql chromium chromium-driver systemd strace"
packages_for_qt6="g++ cmake ninja-build qt6-base-dev qt6-positioning-dev qt6-declarative-dev
    qt6-declarative-dev-tools libeasyloggingpp-dev libcsv-dev libzip-dev binutils python3-jsonschema
    pkg-config qml6-module-qtqml qml6-module-qtqml-models qml6-module-qtqml-workerscript
    qml6-module-qtquick qml6-module-qtquick-window"
packages_for_armhf_sysroot="mmdebstrap gpg debian-archive-keyring ca-certificates"
packages_to_build_armhf="crossbuild-essential-armhf qemu-user cmake ninja-build qtbase5-dev-tools qt5-qmake-bin protobuf-compiler"
packages_to_test_armhf="python3-jsonschema"
packages_to_package="$packages_to_run dpkg-dev file binutils"
packages_to_test_packages="$packages_to_package mmdebstrap lintian"
packages_to_make_image="$packages_for_armhf_sysroot kmod cpio fdisk e2fsprogs squashfs-tools openssl"
packages_to_test_image="qemu-system-arm qemu-user python3 e2fsprogs squashfs-tools openssl"
packages_for_abi="$packages_to_run binutils dpkg-dev python3"
packages_for_api="doxygen"
packages_for_images="$packages_to_test pngquant"
packages_to_lint="clang-format clang-tidy clazy codespell cppcheck shellcheck"
packages_for_coverage="$packages_to_test gcovr"
packages_for_benchmarks="$packages_to_run libbenchmark-dev python3"
packages_for_valgrind="$packages_to_test valgrind libc6-dbg"
packages_for_determinism="$packages_to_test g++-12 clang-14 locales"
packages_for_budgets="$packages_to_test valgrind libc6-dbg"
packages_for_armhf_budgets="g++"
packages_to_fuzz="$packages_to_run clang-14 libclang-rt-14-dev"

# quietly WHAT COMMAND...: runs the command; shows its output only if the command fails.
quietly() {
    local what="$1" log status
    shift
    log="$(mktemp)"
    "$@" > "$log" 2>&1 && { rm -f "$log"; return 0; }
    status=$?
    cat "$log" >&2
    rm -f "$log"
    echo "$what failed (exit code $status)" >&2
    return "$status"
}

# need_packages NAME...: installs the missing packages, as root or with sudo.
need_packages() {
    local name missing=() sudo=()
    for name in "$@"; do
        dpkg-query -W -f '${db:Status-Status}\n' "$name" 2> /dev/null | grep -qx installed || missing+=("$name")
    done
    [ "${#missing[@]}" -eq 0 ] && return 0
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo > /dev/null || {
            echo "Missing packages: ${missing[*]}; install them as root, or install sudo." >&2
            return 1
        }
        sudo=(sudo)
    fi
    echo "Installing ${missing[*]}" >&2
    quietly "apt-get update" "${sudo[@]}" apt-get update
    quietly "apt-get install" install_quietly "${missing[@]}"
}

# install_quietly NAME...: installs packages without starting services of theirs, such as gpsd: tests
# start what they need. An administrator who has a policy of his own keeps it.
install_quietly() {
    local policy=/usr/sbin/policy-rc.d status=0 made=false
    if [ ! -e "$policy" ]; then
        # shellcheck disable=SC2016 # for the other shell
        "${sudo[@]}" sh -c 'printf "#!/bin/sh\nexit 101\n" > "$1" && chmod 755 "$1"' - "$policy"
        made=true
    fi
    "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y --no-install-recommends "$@" || status=$?
    [ "$made" = false ] || "${sudo[@]}" rm -f "$policy"
    return "$status"
}

# build_preset NAME: configures the preset and builds what has changed.
build_preset() {
    build_variant "$1" "$1"
}

# build_variant NAME PRESET [CMAKE OPTION...] [--target TARGET...]: the same in build/NAME with these
# options for the preset; the named targets alone, if there are any.
build_variant() {
    local name="$1" preset="$2" options=()
    shift 2
    while [ $# -gt 0 ] && [ "$1" != --target ]; do
        options+=("$1")
        shift
    done
    configure_variant "$name" "$preset" "${options[@]}"
    quietly "Building build/$name" cmake --build "build/$name" "$@"
}

# configure_variant NAME PRESET [CMAKE OPTION...]: prepares build/NAME, and what the compiler of the
# preset needs besides the packages of all presets.
configure_variant() {
    local name="$1" preset="$2"
    shift 2
    if [ "$preset" = armhf ]; then
        # shellcheck disable=SC2086 # a list of names
        need_packages $packages_to_build_armhf
        scripts/armhf-sysroot.sh
    fi
    quietly "Configuring build/$name" cmake --preset "$preset" -B "build/$name" "$@"
}

# run_tests PRESET OPTION...: runs the tests of the preset's build that the options of ctest select.
# Prints one summary with the reasons of what was skipped, on failure the whole output. More tests
# than processors run at a time, because many wait.
run_tests() {
    report_tests "build/$1" --preset "$@"
}

# run_tests_in BUILD OPTION...: the same for a build that has no preset of its own. ctest would run the
# tests of the preset's build, not of the one that --test-dir names.
run_tests_in() {
    report_tests "$1" --test-dir "$1" --output-on-failure --no-tests=error --timeout 300 "${@:2}"
}

# report_tests BUILD OPTION...: what both have in common.
report_tests() {
    local build="$1" log="$1/ctest.log" status=0
    shift
    ctest "$@" -j "$(($(nproc) + 1))" > "$log" 2>&1 || status=$?
    [ "$status" -eq 0 ] || cat "$log"
    awk -v name="${build##*/}" '
        /^Totals:/ { passed += $2; failed += $4; skipped += $6; ++programs }
        /^SKIP   : / { sub(/^[^(]*\([^)]*\) /, ""); ++reasons[$0] }
        END {
            printf "%s: %d checks passed, %d failed, %d skipped, in %d test programs\n",
                   name, passed, failed, skipped, programs
            for (reason in reasons)
                printf "    %d skipped: %s\n", reasons[reason], reason
        }' "$build/Testing/Temporary/LastTest.log"
    grep -E 'tests passed|Total Test time|No tests were found' "$log"
    return "$status"
}

# configure_packages NAME: configures the preset for packaging in build/package-NAME, always with QML.
# The description of the ABI needs the debug information; the packages are stripped.
configure_packages() {
    local link
    link="$(debian_flags LDFLAGS)"
    configure_variant "package-$1" "$1" -DCPACK_GENERATOR=DEB \
        -DGUICORE_BUILD_QML=ON -DGUICORE_BUILD_TERMINAL=ON \
        -DGUICORE_BUILD_TESTS=OFF -DGUICORE_BUILD_BENCHMARKS=OFF -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON \
        -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_FLAGS="$(debian_flags CPPFLAGS) $(debian_flags CXXFLAGS)" \
        -DCMAKE_EXE_LINKER_FLAGS="$link" -DCMAKE_SHARED_LINKER_FLAGS="$link" \
        -DCMAKE_MODULE_LINKER_FLAGS="$link" \
        -DCMAKE_INSTALL_PREFIX=/usr -DCMAKE_SKIP_INSTALL_RPATH=ON
}

# debian_flags NAME: the flags of Debian's own packages, with every protection, but without a mapping
# of paths: cmake/RivoTargets.cmake has one. They are the same for amd64, arm64 and armhf.
debian_flags() {
    DEB_BUILD_MAINT_OPTIONS="hardening=+all reproducible=-all" dpkg-buildflags --get "$1"
}

# build_packaged_library NAME: libGuiCore.so as the packages of a preset have it; sets library to it.
build_packaged_library() {
    configure_packages "$1"
    quietly "Building the library of preset $1" cmake --build "build/package-$1" --target GuiCore
    library="build/package-$1/lib/libGuiCore.so"
}
