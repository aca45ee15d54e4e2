#!/usr/bin/env bash
# Makes a bootable image of Debian 12 for 32-bit ARM with the terminal alone on the screen, in
# build/image: disk.img, vmlinuz, initrd.img, and update.img, a medium that brings the same version to
# a vehicle. docs/image.md describes it. Needs root, for the owners of the files.
# usage: ./make-image.sh [--version TEXT] [--packages FOLDER] [--key FILE]
# --packages: packages that packaging/make-packages.sh armhf has made before
# --key: the private key, of Ed25519 in PEM, that signs updates; without it build/image/update.key, which
# is made if it is not there
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
# shellcheck source=scripts/setup.sh
. scripts/setup.sh
packages="" version="" key=build/image/update.key
while [ $# -gt 0 ]; do
    case "$1" in
        --version) version="$2" ;;
        --packages) packages="$2" ;;
        --key) key="$2" ;;
        *) sed -n 's/^# usage: /usage: /p' "$0" >&2; exit 2 ;;
    esac
    shift 2
done
[ "$(id -u)" -eq 0 ] || { echo "make-image.sh needs root" >&2; exit 1; }

# shellcheck disable=SC2086 # a list of names
need_packages $packages_to_make_image
packaging/image/base.sh
if [ -z "$packages" ]; then
    packaging/make-packages.sh armhf
    packages=build/package-armhf/packages
fi
from=packaging/image
folder=build/image
root="$folder/root"
version="${version:-$(dpkg-deb -f "$packages"/rivo-terminal_*.deb Version)}"
[ -e "$key" ] || (umask 077; openssl genpkey -algorithm ed25519 -out "$key")
umask 022

# The files of the root slots, without those that no program here reads.
rm -rf "$root" "$folder/start"
mkdir -p "$root"/usr/{bin,sbin,lib}
for name in bin sbin lib; do
    ln -s "usr/$name" "$root/$name"
done
tar -C "$root" -xf "$folder/base.tar" --keep-directory-symlink --wildcards --exclude='./usr/share/man/*' --exclude='./dev/*' \
    --exclude='./usr/share/locale/*' --exclude='*/dri/*_dri.so' --exclude='*/libLLVM*' \
    --exclude='./usr/share/doc/*/*changelog*' --exclude='./var/cache/apt/*' --exclude='./var/lib/apt/*'
for name in libguicore1 qml-module-rivo-guicore rivo-terminal; do
    dpkg-deb --fsys-tarfile "$packages/$name"_*.deb | tar -C "$root" -x --keep-directory-symlink
done
release="$(basename "$folder"/kernel/lib/modules/*)"
mkdir -p "$root/usr/lib/modules"
tar -C "$folder/kernel/lib/modules" -c --exclude='drivers/media' --exclude='drivers/net/wireless' \
    --exclude='drivers/iio' --exclude='drivers/infiniband' --exclude='drivers/staging' \
    --exclude='drivers/scsi' --exclude='drivers/md' --exclude='net' --exclude='fs/btrfs' \
    --exclude='fs/xfs' --exclude='fs/ocfs2' --exclude='sound/soc' --exclude=build --exclude=source "$release" |
    tar -C "$root/usr/lib/modules" -x
cp "$folder"/kernel/boot/vmlinuz-* "$folder/vmlinuz"
depmod -b "$root" "$release"

# What the scripts of the packages would do: users, links, folders.
cp "$root/usr/share/base-passwd/passwd.master" "$root/etc/passwd"
cp "$root/usr/share/base-passwd/group.master" "$root/etc/group"
(umask 077; sed 's/:.*/:*:19000:0:99999:7:::/' "$root/etc/passwd" > "$root/etc/shadow")
install -D -m 644 "$from/sysusers.conf" "$root/usr/lib/sysusers.d/rivo-image.conf"
quietly "Making the users" systemd-sysusers --root="$PWD/$root"
: > "$root/etc/machine-id"
echo rivo-terminal > "$root/etc/hostname"
mkdir -p "$root"/{dev,proc,sys,run,tmp,data,var/lib/rivo-terminal,var/lib/systemd,var/log,var/tmp}
chmod 1777 "$root/tmp" "$root/var/tmp"

# The kiosk and the slots.
cp "$from/fstab" "$root/etc/fstab"
units="$root/etc/systemd/system"
install -D -m 644 "$from/terminal.conf" "$units/rivo-terminal.service.d/image.conf"
install -D -m 644 "$from/emergency.conf" "$units/emergency.service.d/image.conf"
install -m 644 "$from/rivo-slot-good.service" "$from/rivo-update.service" "$units"
install -m 755 "$from/rivo-slot" "$root/usr/bin"
install -D -m 755 "$from/take-update" "$root/usr/lib/rivo-image/take-update"
install -m 644 "$from/slot-state" "$root/usr/lib/rivo-image"
install -m 644 "$from/drivers.txt" "$root/usr/lib/rivo-image/drivers"
openssl pkey -in "$key" -pubout -out "$root/usr/lib/rivo-image/update.pem"
echo "$version" > "$root/usr/lib/rivo-image/version"
mkdir -p "$units/multi-user.target.wants"
for unit in rivo-slot-good rivo-update; do
    ln -s "../$unit.service" "$units/multi-user.target.wants/$unit.service"
done
ln -s /usr/lib/systemd/system/rivo-terminal.service "$units/multi-user.target.wants/"
ln -s /usr/lib/systemd/system/multi-user.target "$units/default.target"
# Nothing here uses them, and each makes the start longer. A login needs a password, which no user has.
for unit in getty@tty1.service serial-getty@ttyAMA0.service getty.target systemd-logind.service \
    systemd-networkd-wait-online.service systemd-timesyncd.service systemd-hwdb-update.service \
    systemd-journal-catalog-update.service systemd-update-done.service ldconfig.service \
    systemd-journal-flush.service systemd-binfmt.service systemd-random-seed.service \
    systemd-sysusers.service systemd-firstboot.service systemd-machine-id-commit.service \
    systemd-update-utmp.service systemd-update-utmp-runlevel.service sys-kernel-debug.mount \
    sys-kernel-tracing.mount sys-kernel-config.mount sys-fs-fuse-connections.mount dev-hugepages.mount \
    dev-mqueue.mount proc-sys-fs-binfmt_misc.automount modprobe@configfs.service modprobe@fuse.service \
    systemd-pcrphase.service systemd-remount-fs.service systemd-journald-audit.socket \
    systemd-ask-password-wall.path systemd-ask-password-console.path cryptsetup.target \
    remote-fs.target swap.target systemd-tmpfiles-clean.timer systemd-modules-load.service \
    apt-daily.timer apt-daily-upgrade.timer dpkg-db-backup.timer e2scrub_all.timer fstrim.timer; do
    ln -sf /dev/null "$units/$unit"
done
find "$root/usr/lib/systemd/system-generators" -type f ! -name systemd-fstab-generator -delete
mkdir -p "$root/etc/systemd/journald.conf.d"
printf '[Journal]\nStorage=volatile\nRuntimeMaxUse=16M\n' > "$root/etc/systemd/journald.conf.d/image.conf"

# The initial file system: a shell, the drivers of the disk, and the choice of the slot.
start="$folder/start"
mkdir -p "$start"/{bin,dev,proc,sys,slot,modules}
cp "$root/bin/busybox" "$start/bin/busybox"
for name in sh mount umount mknod chroot insmod dd head tr cut sha256sum cat echo switch_root usleep; do
    ln -s busybox "$start/bin/$name"
done
install -m 755 "$from/init" "$start/init"
cp "$from/slot-state" "$start"
while read -r name; do
    modprobe -d "$root" -S "$release" --show-depends "$name" 2> /dev/null | sed -n 's/^insmod \([^ ]*\).*/\1/p'
done < "$from/modules.txt" | awk '!seen[$0]++' > "$folder/modules"
while read -r file; do
    cp "$file" "$start/modules"
    basename "$file"
done < "$folder/modules" > "$start/modules/order"
(cd "$start" && find . -print0 | LC_ALL=C sort -z | cpio --quiet --null -o -H newc -R 0:0) | gzip -1 > "$folder/initrd.img"

# The disk. Slot b begins empty; the first update fills it.
slot=256 data=512
make_filesystem() { # FILE SIZE LABEL FOLDER OPTION...
    rm -f "$1"
    quietly "Making $1" mke2fs -q -t ext4 -m 0 -L "$3" -d "$4" "${@:5}" "$1" "$2"
}
quietly "Making root.img" packaging/image/root.sh "$folder/root.img"
rm -rf "$folder/data"
mkdir -p "$folder/data/settings"
install -d -m 700 -o 900 -g 900 "$folder/data/rivo-terminal"
make_filesystem "$folder/data.img" ${data}M rivo-data "$folder/data"
disk="$folder/disk.img"
rm -f "$disk"
truncate -s $((slot * 2 + data + 8))M "$disk"
quietly "Partitioning" sfdisk -q "$disk" << TABLE
label: dos
start=2048, size=4M, type=da
start=12288, size=${slot}M, type=83
size=${slot}M, type=83
size=${data}M, type=83
TABLE
dd if="$folder/root.img" of="$disk" bs=1M seek=6 conv=notrunc,sparse status=none
dd if="$folder/data.img" of="$disk" bs=1M seek=$((6 + slot * 2)) conv=notrunc,sparse status=none

quietly "Making the medium for updates" "$from/medium.sh" "$folder/root.img" "$version" "$key" "$folder/update.img"
rm -rf "$folder/data" "$folder/data.img" "$start" "$folder/modules"
echo "$disk, version $version: $(du -m "$disk" | cut -f1) MB of $(($(stat -c %s "$disk") / 1000000)) MB used"
