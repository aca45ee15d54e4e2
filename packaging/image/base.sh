#!/usr/bin/env bash
# Makes build/image/base.tar, the files of Debian 12 for 32-bit ARM that the terminal needs, without our
# packages, and build/image/kernel, the kernel and its modules. Makes them again only after this script
# or bookworm.sh has changed. No program of the packages runs: make-image.sh does the few things that
# their scripts would do here.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
# shellcheck source=scripts/setup.sh
. scripts/setup.sh
# shellcheck source=scripts/bookworm.sh
. scripts/bookworm.sh

packages=systemd-sysv,udev,kmod,busybox-static,e2fsprogs,util-linux,mount,procps
packages+=,libcsv3,libzip4,libqt5gui5,libqt5multimedia5,libqt5multimedia5-plugins,libqt5network5
packages+=,libqt5serialport5,libqt5qml5,libqt5quick5,libqt5quickcontrols2-5,libqt5sql5-sqlite,libqt5svg5
packages+=,libssl3,openssl,libqrencode4,libmosquitto1,libprotobuf-lite32,fonts-dejavu-core,fontconfig-config,qml-module-qtqml
packages+=,qml-module-qtquick2,qml-module-qtquick-window2,qml-module-qtquick-controls2
packages+=,qml-module-qtquick-templates2,qml-module-qtlocation,qml-module-qtpositioning
kernel=linux-image-armmp-lpae
folder="$PWD/build/image"

mkdir -p "$folder"
exec 9> "$folder/base.lock"
flock 9
made_by="$(cat packaging/image/base.sh scripts/bookworm.sh | sha256sum)"
[ "$(cat "$folder/base.made-by" 2> /dev/null || true)" != "$made_by" ] || exit 0
# shellcheck disable=SC2086 # a list of names
need_packages $packages_to_make_image

rm -rf "$folder/kernel" "$folder/base.made-by"
mkdir -p "$folder/kernel"
cat > "$folder/kernel-hook" << HOOK
#!/bin/sh
set -eu
cd "$folder/kernel"
export APT_CONFIG="\$MMDEBSTRAP_APT_CONFIG"
real="\$(apt-cache depends $kernel | sed -n 's/^  Depends: \(linux-image-[0-9].*\)/\1/p')"
apt-get -o APT::Sandbox::User=root download "\$real"
dpkg-deb --extract ./*.deb .
rm ./*.deb
HOOK
chmod 755 "$folder/kernel-hook"
quietly "Fetching the base system" bootstrap "$folder/base.new.tar" "" \
    --variant=extract --mode=chrootless --architectures=armhf --include="?essential" --include="$packages" \
    --extract-hook="$folder/kernel-hook"
rm "$folder/kernel-hook"
mv "$folder/base.new.tar" "$folder/base.tar"
echo "$made_by" > "$folder/base.made-by"
