#!/usr/bin/env bash
# Builds the Debian packages of a preset (release if none is named), lints them, and tries them with
# nothing but Debian 12 around them: prints the grid of the shipped feed, makes pictures of the
# terminal, and starts the devices that are programs. Packages of this machine's architecture are
# installed into a bare system of their own; those of preset armhf are unpacked with all that they
# need and run in an emulator.
# usage: ./test-packages.sh [PRESET]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
# shellcheck source=scripts/setup.sh
. scripts/setup.sh
# shellcheck source=scripts/bookworm.sh
. scripts/bookworm.sh
preset="${1:-release}"

# shellcheck disable=SC2086 # a list of names
need_packages $packages_to_test_packages
packaging/make-packages.sh "$preset"
packages="$PWD/build/package-$preset/packages"
seen="$PWD/build/package-$preset/seen"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
rm -rf "$seen"
mkdir -p "$seen" "$work/repository"

lintian --fail-on error,warning --suppress-tags bad-distribution-in-changes-file "$packages"/*.deb
echo "lintian: no error, no warning"

# A repository of our packages alone.
cp "$packages"/*.deb "$work/repository"
(cd "$work/repository" && dpkg-scanpackages --multiversion . > Packages 2> /dev/null)
repository="deb [trusted=yes] copy:$work/repository ./"
names="$(sed -n 's/^Package: //p' "$work/repository/Packages" | paste -sd,)"
architecture="$(sed -n 's/^Architecture: //p' "$work/repository/Packages" | sort -u)"
chmod 755 "$work"

# With what was installed, programs found by PATH, and an X server without a display; FEEDS is the
# folder of the shipped feeds.
cat > "$work/look.sh" << 'LOOK'
set -eu
rivo-grid "$FEEDS/hill-valley.json" > grid.txt
rivo-models fleet "$FEEDS/coast-line.json" > fleet.txt
export QT_QUICK_BACKEND=software LC_ALL=C.UTF-8 XDG_RUNTIME_DIR="$PWD/runtime" TMPDIR=/tmp
mkdir -m 700 "$XDG_RUNTIME_DIR"
for page in sell products zreport fleet devices settings; do
    xvfb-run -a -s "-screen 0 1280x800x24" rivo-terminal --page "$page" --language de \
        --time 10:05 --size 1280x800 --screenshot "$page.png" 2>> terminal.txt
done
ls "$HOME/.local/share/rivo-terminal/" > journal.txt
rivo-journal simulate trial.journal --sales 50 --per-shift 20
rivo-journal verify trial.journal > verified.txt
# There is no database here, which its driver reports.
rivo-office gaps --database-host "$PWD" 2> office.txt || echo "exit code $?" >> office.txt

# The devices that are programs.
timeout 30 virtual-printer --tcp 0 --paper . < /dev/null > printer.txt || true
printf 'books\nquit\n' | virtual-card-terminal --port 0 --interactive > cards.txt
LOOK

# look_installed: in a new system, as the terminal's user.
look_installed() {
    cat > "$work/look" << HOOK
#!/bin/sh
set -eu
install -d -o 0 -m 755 "\$1/var/lib/rivo-terminal"
chroot "\$1" chown rivo-terminal: /var/lib/rivo-terminal
cp "$work/look.sh" "\$1/var/tmp/look.sh"
chroot "\$1" runuser -u rivo-terminal -- env -C /var/tmp HOME=/var/lib/rivo-terminal \\
    FEEDS=/usr/share/rivo-terminal/feeds sh /var/tmp/look.sh
cp "\$1"/var/tmp/*.txt "\$1"/var/tmp/*.png "$seen"
chroot "\$1" dpkg-query -W -f '\${Package}\n' > "$seen/installed.txt"
chroot "\$1" dpkg --purge $(echo "$names" | tr , ' ') > "$seen/purged.txt" 2>&1
chroot "\$1" ls /etc/default /usr/bin | grep rivo >> "$seen/left.txt" || true
HOOK
    chmod 755 "$work/look"
    quietly "Installing into a bare system" bootstrap /dev/null "$repository" \
        --variant=minbase --skip=check/empty --aptopt='APT::Sandbox::User "root"' \
        --include="$names,xvfb,xauth" --customize-hook="$work/look"
    say "$(wc -l < "$seen/installed.txt") packages installed from bookworm main alone" \
        grep -qx rivo-terminal "$seen/installed.txt"
    say "nothing left after the packages were purged" test ! -s "$seen/left.txt"
}

# look_unpacked: on this machine, in an emulator that takes the unpacked system for the root where it
# has what is looked for. An emulated program cannot start others, so this machine's shell does, and
# its X server shows the pictures.
look_unpacked() {
    local system="$work/system" name
    fetch_armhf "$work/system.tar" "$names" "$repository"
    unpack_tree "$work/system.tar" "$system"
    mkdir -p "$work/bin" "$work/home" "$work/look"
    for name in rivo-grid rivo-journal rivo-models rivo-office rivo-terminal virtual-printer; do
        printf '#!/bin/sh\nexec qemu-arm -L "%s" -E LD_BIND_NOW=1 "%s" "$@"\n' \
            "$system" "$system/usr/bin/$name" > "$work/bin/$name"
        chmod 755 "$work/bin/$name"
    done
    cp "$system/usr/bin/virtual-card-terminal" "$work/bin"
    quietly "Running the programs" "${isolated[@]}" env -C "$work/look" PATH="$work/bin:$PATH" \
        HOME="$work/home" FEEDS="$system/usr/share/rivo-terminal/feeds" sh "$work/look.sh"
    cp "$work/look"/*.txt "$work/look"/*.png "$seen"
    find "$system/usr/share/doc" -mindepth 1 -maxdepth 1 -printf '%f\n' | sort > "$seen/unpacked.txt"
    say "unpacked with what they need from bookworm main alone: $(wc -l < "$seen/unpacked.txt") packages" \
        grep -qx rivo-terminal "$seen/unpacked.txt"
}

# say WHAT CONDITION...: reports what was seen.
failures=0
say() {
    local what="$1"
    shift
    if "$@"; then echo "seen: $what"; else echo "NOT seen: $what"; failures=$((failures + 1)); fi
}

for package in "$packages"/*.deb; do
    dpkg-deb --extract "$package" "$work/files"
done
protections=0
packaging/check-hardening.sh "$work/files" > "$seen/protections.txt" || protections=$?
say "$(paste -sd ';' "$seen/protections.txt")" test "$protections" -eq 0

# same_files PACKAGE: outside the folder of the architecture, no file names an architecture.
same_files() {
    local files="$work/same/$1" triplet
    triplet="$(dpkg-architecture -a"$architecture" -q DEB_HOST_MULTIARCH)"
    mkdir -p "$work/same"
    dpkg-deb --extract "$packages/$1"_*.deb "$files"
    [ -d "$files/usr/lib/$triplet" ] && rm -r "$files/usr/lib/$triplet" &&
        ! grep -rE "$triplet|$architecture" "$files"
}
for name in libguicore1 qml-module-rivo-guicore; do
    say "$name: Multi-Arch: $(dpkg-deb -f "$packages/$name"_*.deb Multi-Arch)" \
        test "$(dpkg-deb -f "$packages/$name"_*.deb Multi-Arch)" = same
    say "$name: the same files for all architectures" same_files "$name"
done
dpkg-deb --control "$packages"/libguicore1_*.deb "$work/control"
say "libguicore1: a symbols file of $(grep -c '^ ' "$work/control/symbols") symbols" \
    grep -q '^libGuiCore.so.1 libguicore1 ' "$work/control/symbols"

# bill_of NAME: the package's list of what it is made of names all that the package needs.
bill_of() {
    local files="$work/bill/$1"
    mkdir -p "$work/bill"
    dpkg-deb --extract "$packages/$1"_*.deb "$files"
    python3 - "$files/usr/share/doc/$1/sbom.spdx.json" "build/package-$preset/packaging/$1/depends" << 'BILL'
import json
import sys

with open(sys.argv[1], encoding="utf-8") as file:
    bill = json.load(file)
with open(sys.argv[2], encoding="utf-8") as file:
    needed = set(file.read().split())
known = {each["SPDXID"]: each for each in bill["packages"]}
depended = {known[each["relatedSpdxElement"]]["name"] for each in bill["relationships"]
            if each["relationshipType"] == "DEPENDS_ON"}
without_version = [each["name"] for each in bill["packages"] if not each.get("versionInfo")]
if depended != needed or without_version:
    sys.exit(f"{sys.argv[1]}: {sorted(depended ^ needed)}, without a version: {without_version}")
BILL
}
for package in "$packages"/*.deb; do
    name="$(dpkg-deb -f "$package" Package)"
    say "$name: a list of what it needs, with versions" bill_of "$name"
done

# The machine that each program and library is for.
find "$work/files" -type f -print0 | xargs -0 file --brief --no-pad | grep '^ELF' |
    sed -E 's/^(ELF [^,]*, [^,]*),.*/\1/' | sort | uniq -c > "$seen/machines.txt"
case "$architecture" in
    amd64) machine="ELF 64-bit LSB .*, x86-64" ;;
    arm64) machine="ELF 64-bit LSB .*, ARM aarch64" ;;
    armhf) machine="ELF 32-bit LSB .*, ARM" ;;
esac
say "$architecture: $(paste -sd ';' "$seen/machines.txt" | tr -s ' ')" \
    test -z "$(grep -vE "^ *[0-9]+ $machine\$" "$seen/machines.txt")"

if [ "$architecture" = "$(dpkg --print-architecture)" ]; then look_installed; else look_unpacked; fi
say "rivo-grid: $(head -1 "$seen/grid.txt")" \
    grep -q '^Hill & Valley Buses: 4 columns x 8 rows' "$seen/grid.txt"
say "rivo-models: $(wc -l < "$seen/fleet.txt") lines of the fleet" test -s "$seen/fleet.txt"
say "rivo-terminal: quiet" test ! -s "$seen/terminal.txt"
say "virtual-printer: $(paste -sd ' ' "$seen/printer.txt")" grep -q '^port [1-9]' "$seen/printer.txt"
say "virtual-card-terminal: $(paste -sd ' ' "$seen/cards.txt")" grep -q '^port [1-9]' "$seen/cards.txt"
say "pictures of the six pages, the smallest of $(stat -c %s "$seen"/*.png | sort -n | head -1) bytes: $seen/*.png" \
    test "$(find "$seen" -name '*.png' -size +20k | wc -l)" -eq 6
say "rivo-journal: $(head -1 "$seen/verified.txt")" test -s "$seen/verified.txt"
say "rivo-office: $(paste -sd ' ' "$seen/office.txt")" grep -q 'connection to server on socket' "$seen/office.txt"
say "the journal $(cat "$seen/journal.txt")" grep -q '^sales-GBP.journal' "$seen/journal.txt"
[ "$failures" -eq 0 ] || cat "$seen/terminal.txt" "$seen/purged.txt" 2> /dev/null || true
[ "$failures" -eq 0 ]
