# shellcheck shell=bash
# Systems of Debian 12, fetched as apt fetches on this machine. Source it in the root of the
# repository.

suite=bookworm

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

# Root's programs are kept from the mounts and the processes of this machine where the kernel lets
# us; others have that from mmdebstrap, and an emulator needs no rights.
isolated=()
if [ "$(id -u)" -eq 0 ] && unshare --mount --pid --fork --mount-proc true 2> /dev/null; then
    isolated=(unshare --mount --pid --fork --mount-proc --kill-child)
fi

# bootstrap TARGET SOURCE OPTION...: a system made by mmdebstrap with these options. SOURCE is a line
# of a sources.list beside Debian's, or empty.
bootstrap() {
    local target="$1" source="$2" settings keys=() key mirror status=0
    shift 2
    while read -r key; do
        [ ! -f "$key" ] || keys+=("--keyring=$key")
    done < <(keyrings 2> /dev/null)
    mirror="$(mirrors)"
    [ -n "$mirror" ] || { echo "apt has no source of $suite on this machine" >&2; return 1; }
    settings="$(mktemp)" # for its owner alone: may hold the password of a proxy
    apt_settings > "$settings"
    "${isolated[@]}" mmdebstrap --aptopt="$settings" "${keys[@]}" "$@" \
        "$suite" "$target" "$mirror" ${source:+"$source"} || status=$?
    rm -f "$settings"
    return "$status"
}

# fetch_armhf ARCHIVE PACKAGES [SOURCE]: a tar file with the contents of 32-bit ARM packages, named with
# commas between, and of all that they need. Nothing of it is installed or run.
fetch_armhf() {
    quietly "Fetching armhf packages" bootstrap "$1" "${3:-}" \
        --variant=extract --mode=chrootless --architectures=armhf --include="$2"
}

# unpack_tree ARCHIVE FOLDER [TAR OPTION...]: unpacks what fetch_armhf made. Links to absolute paths
# become relative, or they would lead into this machine.
unpack_tree() {
    local archive="$1" folder="$2" link
    shift 2
    mkdir -p "$folder"
    tar -C "$folder" -xf "$archive" --no-same-owner --wildcards "$@"
    find "$folder" -type l -lname '/*' | while read -r link; do
        ln -sfrn "$folder$(readlink "$link")" "$link"
    done
}
