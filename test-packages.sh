#!/usr/bin/env bash
# Builds the Debian packages, lints them, installs them into a bare Debian 12 of its own, and there
# prints the grid of the shipped feed and a picture of the terminal. The packages of Debian come from
# the mirror and with the settings that this machine's apt has.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
# shellcheck source=packaging/setup.sh
. packaging/setup.sh

# shellcheck disable=SC2086 # a list of names
need_packages $packages_to_test_packages
packaging/make-packages.sh
packages="$PWD/build/package-release/packages"
seen="$PWD/build/package-release/seen"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
rm -rf "$seen"
mkdir -p "$seen" "$work/repository"

lintian --fail-on error,warning --suppress-tags bad-distribution-in-changes-file "$packages"/*.deb
echo "lintian: no error, no warning"

# A repository of our packages alone.
cp "$packages"/*.deb "$work/repository"
(cd "$work/repository" && dpkg-scanpackages --multiversion . > Packages 2> /dev/null)

# How this machine reaches Debian; without the security suite, which holds nothing that is needed.
# shellcheck disable=SC2016 # fields of apt-get
mirror="$(apt-get indextargets --format '$(SITE) $(RELEASE) $(COMPONENT) $(ORIGIN)' |
    awk '$2 == "bookworm" && $3 == "main" && !sure { site = $1; sure = $4 == "Debian" } END { print site }')"
apt-config dump | grep -E '^Acquire::(http|https|Retries|ForceIPv|Check-)' > "$work/apt.conf" || true
echo 'APT::Sandbox::User "root";' >> "$work/apt.conf" # who alone reads the folder of our packages
names="$(sed -n 's/^Package: //p' "$work/repository/Packages" | paste -sd,)"

# In the new system, as the terminal's user, with what was installed and an X server without a
# display.
cat > "$work/look.sh" << 'LOOK'
set -eu
cd /var/tmp
rivo-grid /usr/share/rivo-terminal/feeds/hill-valley.json > grid.txt
rivo-models fleet /usr/share/rivo-terminal/feeds/coast-line.json > fleet.txt
export QT_QUICK_BACKEND=software LC_ALL=C.UTF-8 XDG_RUNTIME_DIR=/var/tmp/runtime
mkdir -m 700 "$XDG_RUNTIME_DIR"
for page in sell products zreport fleet devices settings; do
    xvfb-run -a -s "-screen 0 1280x800x24" rivo-terminal --page "$page" --language de \
        --time 10:05 --size 1280x800 --screenshot "$page.png" 2>> terminal.txt
done
ls "$HOME/.local/share/rivo-terminal/" > journal.txt
LOOK
cat > "$work/look" << HOOK
#!/bin/sh
set -eu
install -d -o 0 -m 755 "\$1/var/lib/rivo-terminal"
chroot "\$1" chown rivo-terminal: /var/lib/rivo-terminal
cp "$work/look.sh" "\$1/var/tmp/look.sh"
chroot "\$1" runuser -u rivo-terminal -- env HOME=/var/lib/rivo-terminal sh /var/tmp/look.sh
cp "\$1"/var/tmp/*.txt "\$1"/var/tmp/*.png "$seen"
chroot "\$1" dpkg-query -W -f '\${Package}\n' > "$seen/installed.txt"
chroot "\$1" dpkg --purge $(echo "$names" | tr , ' ') > "$seen/purged.txt" 2>&1
chroot "\$1" ls /etc/default /usr/bin | grep rivo >> "$seen/left.txt" || true
HOOK
chmod 755 "$work" "$work/look"

# Root is kept from the mounts and the processes of this machine; others have that from mmdebstrap.
isolated=()
[ "$(id -u)" -ne 0 ] || isolated=(unshare --mount --pid --fork --mount-proc --kill-child)
quietly "Installing into a bare system" "${isolated[@]}" \
    mmdebstrap --variant=minbase --skip=check/empty \
    --aptopt="$work/apt.conf" --include="$names,xvfb,xauth" --customize-hook="$work/look" bookworm /dev/null \
    "deb ${mirror:-http://deb.debian.org/debian} bookworm main" \
    "deb [trusted=yes] copy:$work/repository ./"

# say WHAT CONDITION...: reports what was seen.
failures=0
say() {
    local what="$1"
    shift
    if "$@"; then echo "seen: $what"; else echo "NOT seen: $what"; failures=$((failures + 1)); fi
}
say "$(wc -l < "$seen/installed.txt") packages installed from bookworm main alone" \
    grep -qx rivo-terminal "$seen/installed.txt"
say "rivo-grid: $(head -1 "$seen/grid.txt")" \
    grep -q '^Hill & Valley Buses: 4 columns x 8 rows' "$seen/grid.txt"
say "rivo-models: $(wc -l < "$seen/fleet.txt") lines of the fleet" test -s "$seen/fleet.txt"
say "rivo-terminal: quiet" test ! -s "$seen/terminal.txt"
say "pictures of the six pages, the smallest of $(stat -c %s "$seen"/*.png | sort -n | head -1) bytes: $seen/*.png" \
    test "$(find "$seen" -name '*.png' -size +20k | wc -l)" -eq 6
say "the journal $(cat "$seen/journal.txt")" grep -q '^sales-GBP.journal' "$seen/journal.txt"
say "nothing left after the packages were purged" test ! -s "$seen/left.txt"
[ "$failures" -eq 0 ] || cat "$seen/terminal.txt" "$seen/purged.txt"
[ "$failures" -eq 0 ]
