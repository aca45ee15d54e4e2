#!/usr/bin/env bash
# Makes build/armhf-sysroot: the headers and libraries of Debian 12 for 32-bit ARM, fetched from the
# mirror, and with the settings, that apt uses on this machine. Nothing of it is installed or run
# here. Made again only after this script has changed.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=packaging/setup.sh
. packaging/setup.sh

suite=bookworm
packages=libc6-dev,qtbase5-dev,qtpositioning5-dev,libeasyloggingpp-dev,libcsv-dev
sysroot="$PWD/build/armhf-sysroot"
stamp="$sysroot/made-by"

# What apt reads on this machine: URIs with the suite, certificates, proxies, credentials, keys.
mirrors() {
    apt-get update --print-uris | sed -nE "s#^'(.*)/dists/$suite/InRelease' .*#deb \1 $suite main#p"
}

apt_settings() {
    local netrc netrc_parts
    eval "$(apt-config shell netrc Dir::Etc::netrc/f netrc_parts Dir::Etc::netrcparts/d)"
    apt-config dump Acquire APT::Sandbox
    printf 'Dir::Etc::netrc "%s";\nDir::Etc::netrcparts "%s";\n' "$netrc" "$netrc_parts"
}

keyrings() {
    local parts
    eval "$(apt-config shell parts Dir::Etc::trustedparts/d)"
    printf '%s\n' /usr/share/keyrings/debian-archive-keyring.gpg "${parts%/}"/*.asc "${parts%/}"/*.gpg
    grep -rhoiE '\bsigned-by *[:=] *[^] ]+' /etc/apt/sources.list /etc/apt/sources.list.d |
        sed -E 's/^[^:=]*[:=] *//' | tr ',' '\n'
}

# fill FOLDER: unpacks the packages into it. Links to absolute paths become relative, or the linker
# would follow them into this machine.
fill() {
    local folder="$1" archive="$1.tar" settings="$1.apt" keys=() key link mirror
    (umask 077 && apt_settings > "$settings") # may hold the password of a proxy
    while read -r key; do
        [ ! -f "$key" ] || keys+=("--keyring=$key")
    done < <(keyrings 2> /dev/null)
    mirror="$(mirrors)"
    [ -n "$mirror" ] || { echo "apt has no source of $suite on this machine" >&2; return 1; }
    quietly "Fetching the armhf packages" mmdebstrap --variant=extract --mode=chrootless \
        --architectures=armhf --aptopt="$settings" "${keys[@]}" --include="$packages" \
        "$suite" "$archive" "$mirror"
    mkdir -p "$folder"
    # Only what a compiler, a linker and a loader look at, without what nothing here loads.
    tar -C "$folder" -xf "$archive" --no-same-owner --wildcards \
        --exclude='*/libLLVM*' --exclude='*/dri' --exclude='*/perl*' --exclude='*/python3*' \
        ./lib ./usr/include ./usr/lib
    find "$folder" -type l -lname '/*' | while read -r link; do
        ln -sfrn "$folder$(readlink "$link")" "$link"
    done
}

made_by="$(sha256sum < packaging/armhf-sysroot.sh)"
[ "$(cat "$stamp" 2> /dev/null || true)" != "$made_by" ] || exit 0
# shellcheck disable=SC2086 # a list of names
need_packages $packages_for_armhf_sysroot
mkdir -p build
trap 'rm -rf "$sysroot".new*' EXIT
rm -rf "$sysroot".new*
fill "$sysroot.new"
echo "$made_by" > "$sysroot.new/made-by"
rm -rf "$sysroot"
mv "$sysroot.new" "$sysroot"
