# shellcheck shell=bash
# Makes systems of Debian 12 from the sources and with the settings of apt on this machine. Source it
# in the root of the repository.

suite=bookworm

# The settings of apt on this machine: URIs with the suite, certificates, proxies, credentials, keys.
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

# As root, programs run in mount and process namespaces of their own if the kernel allows that. For
# other users mmdebstrap does the same. An emulator needs no rights.
isolated=()
if [ "$(id -u)" -eq 0 ] && unshare --mount --pid --fork --mount-proc true 2> /dev/null; then
    isolated=(unshare --mount --pid --fork --mount-proc --kill-child)
fi

# bootstrap TARGET SOURCE OPTION...: makes a system by mmdebstrap with these options. SOURCE is an
# additional line of sources.list, or empty.
bootstrap() {
    local target="$1" source="$2" settings keys=() key mirror status=0
    shift 2
    while read -r key; do
        [ ! -f "$key" ] || keys+=("--keyring=$key")
    done < <(keyrings 2> /dev/null)
    mirror="$(mirrors)"
    [ -n "$mirror" ] || { echo "apt has no source of $suite on this machine" >&2; return 1; }
    settings="$(mktemp)" # readable by its owner only: may hold the password of a proxy
    apt_settings > "$settings"
    "${isolated[@]}" mmdebstrap --aptopt="$settings" "${keys[@]}" "$@" \
        "$suite" "$target" "$mirror" ${source:+"$source"} || status=$?
    rm -f "$settings"
    return "$status"
}

# fetch_armhf ARCHIVE PACKAGES [SOURCE]: writes a tar file with the contents of 32-bit ARM packages and
# of their dependencies. PACKAGES is a list with commas. Does not install or run them.
fetch_armhf() {
    quietly "Fetching armhf packages" bootstrap "$1" "${3:-}" \
        --variant=extract --mode=chrootless --architectures=armhf --include="$2"
}

# unpack_tree ARCHIVE FOLDER [TAR OPTION...]: unpacks an archive of fetch_armhf. Absolute links become
# relative; otherwise they would point to files of this machine.
unpack_tree() {
    local archive="$1" folder="$2" link
    shift 2
    mkdir -p "$folder"
    tar -C "$folder" -xf "$archive" --no-same-owner --wildcards "$@"
    find "$folder" -type l -lname '/*' | while read -r link; do
        ln -sfrn "$folder$(readlink "$link")" "$link"
    done
}
