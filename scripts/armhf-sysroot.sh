#!/usr/bin/env bash
# Makes build/armhf-sysroot with the headers and libraries of Debian 12 for 32-bit ARM. Does not
# install or run them. Makes the folder again only after this script or bookworm.sh has changed.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/setup.sh
. scripts/setup.sh
# shellcheck source=scripts/bookworm.sh
. scripts/bookworm.sh

packages=libc6-dev,qtbase5-dev,qtpositioning5-dev,libeasyloggingpp-dev,libcsv-dev,libzip-dev
packages+=,qtdeclarative5-dev,qtquickcontrols2-5-dev,libsqlite3-dev,libssl-dev,libqrencode-dev # the QML module and the terminal
packages+=,libqt5serialport5-dev,qtmultimedia5-dev,libprotobuf-dev,zlib1g-dev,libmosquitto-dev # the parts of a vehicle
packages+=,libmicrohttpd-dev # the office
sysroot="$PWD/build/armhf-sysroot"
stamp="$sysroot/made-by"

# One process makes the folder; concurrent callers wait.
mkdir -p build
exec 9> build/armhf-sysroot.lock
flock 9
made_by="$(cat scripts/armhf-sysroot.sh scripts/bookworm.sh | sha256sum)"
[ "$(cat "$stamp" 2> /dev/null || true)" != "$made_by" ] || exit 0
# shellcheck disable=SC2086 # a list of names
need_packages $packages_for_armhf_sysroot
trap 'rm -rf "$sysroot".new*' EXIT
rm -rf "$sysroot".new*
fetch_armhf "$sysroot.new.tar" "$packages"
# Only files for the compiler, the linker and the loader, without large ones that no program loads.
unpack_tree "$sysroot.new.tar" "$sysroot.new" \
    --exclude='*/libLLVM*' --exclude='*/dri' --exclude='*/perl*' --exclude='*/python3*' \
    ./lib ./usr/include ./usr/lib
echo "$made_by" > "$sysroot.new/made-by"
rm -rf "$sysroot"
mv "$sysroot.new" "$sysroot"
