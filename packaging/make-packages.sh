#!/usr/bin/env bash
# Builds the Debian packages of a preset (default: release) in build/package-PRESET/packages and
# prints their names and sizes. Fails if docs/delivery.md lists other contents; with --update it
# writes the list into the document.
# usage: packaging/make-packages.sh [--update] [PRESET]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/setup.sh
. scripts/setup.sh
update=false
[ "${1:-}" = --update ] && { update=true; shift; }
preset="${1:-release}"
build="build/package-$preset"
document=docs/delivery.md

# shellcheck disable=SC2086 # a list of names
need_packages $packages_to_package
configure_packages "$preset"
quietly "Building the packages of preset $preset" cmake --build "$build"

# The symbols file of the library: which release brought each symbol. check-abi.sh looks for those
# that are missing.
version="$(sed -n 's/^CMAKE_PROJECT_VERSION:[A-Z]*=//p' "$build/CMakeCache.txt")"
architecture="$(sed -n 's/^set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE "\(.*\)")$/\1/p' "$build/CPackConfig.cmake")"
dpkg-gensymbols -a"$architecture" "-v$version" "-plibguicore${version%%.*}" \
    -Ipackaging/abi/libGuiCore.symbols -q \
    "-e$build/lib/libGuiCore.so.$version" "-O$build/packaging/symbols"

# The date of the last commit, so that the same sources give the same packages.
SOURCE_DATE_EPOCH="$(git log -1 --format=%ct 2> /dev/null || stat -c %Y CHANGELOG.md)"
export SOURCE_DATE_EPOCH

for folder in "$build"/packaging/*/; do
    [ -f "$folder/depends" ] || continue
    name="$(basename "$folder")"
    packaging/sbom.py "$name" "$version" "$build" > "$folder/sbom.spdx.json"
done
rm -rf "$build/packages" "$build/_CPack_Packages"
(cd "$build" && umask 022 && quietly "Packing" cpack)

# owners FOLDER: prints the packages of the libraries that the binaries in the folder load. The names
# of the packages are the same for every architecture, so this machine's packages give them: all of
# them are installed here.
owners() {
    local own library
    own="$(find "$1" "$build/lib" -name '*.so*' -printf '%f\n')"
    find "$1" -type f -print0 | xargs -0 readelf -d 2> /dev/null |
        sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' | sort -u | grep -vxF "$own" |
        while read -r library; do
            case "$library" in
                ld-linux*) echo libc6 ;; # the loader has another name on each architecture
                *) (dpkg -S "*/$(dpkg-architecture -q DEB_HOST_MULTIARCH)/$library" || echo "$library") | cut -d: -f1 ;;
            esac
        done | LC_ALL=C sort -u
}

# The dependencies of each package must be those in cmake/RivoPackages.cmake: dpkg-shlibdeps found
# them, or a cross build copied them from there. The owner of each loaded library must be among them.
for package in "$build"/packages/*.deb; do
    name="$(dpkg-deb -f "$package" Package)"
    found="$(dpkg-deb -f "$package" Depends | tr , '\n' | sed -E 's/^ *([^ ]+).*/\1/' |
        grep -vxE 'libguicore1|qml-module-rivo-guicore' | LC_ALL=C sort -u)"
    named="$(LC_ALL=C sort -u "$build/packaging/$name/depends")"
    [ "$found" = "$named" ] || {
        diff <(echo "$named") <(echo "$found") || true
        echo "$name depends on others than cmake/RivoPackages.cmake names" >&2
        exit 1
    }
    files="$build/_CPack_Packages/files/$name"
    mkdir -p "$files"
    dpkg-deb --extract "$package" "$files"
    unnamed="$(LC_ALL=C comm -13 <(echo "$named") <(owners "$files"))"
    [ -z "$unnamed" ] || {
        echo "$name needs $unnamed, which cmake/RivoPackages.cmake does not name" >&2
        exit 1
    }
done

# contents: prints the files of each package, with TRIPLET for the triplet of the architecture.
contents() {
    local package name
    for package in "$build"/packages/*.deb; do
        printf '%s\t%s\n' "$(dpkg-deb -f "$package" Package)" "$package"
    done | LC_ALL=C sort | while IFS=$'\t' read -r name package; do
        echo "$name"
        dpkg-deb --fsys-tarfile "$package" | tar -t | grep -v '/$' |
            sed -E 's#^\./#    /#; s#/lib/[^/]+-linux-gnu[a-z]*/#/lib/TRIPLET/#' | LC_ALL=C sort
    done
}

# documented: prints the list between the two comments of the document.
documented() { sed -n '/^<!-- contents of the packages -->$/,/^<!-- end -->$/p' "$document"; }
# shellcheck disable=SC2016 # a code fence, not a command
listed="$(printf '<!-- contents of the packages -->\n```\n%s\n```\n<!-- end -->' "$(contents)")"
if "$update"; then
    { sed '/^<!-- contents of the packages -->$/,$d' "$document"; echo "$listed"
        sed '1,/^<!-- end -->$/d' "$document"; } > "$build/document"
    cp "$build/document" "$document"
elif ! diff <(documented) <(echo "$listed"); then
    echo "$document lists other contents; packaging/make-packages.sh --update corrects it." >&2
    exit 1
fi

for package in "$build"/packages/*.deb; do
    printf '%s  %d kB, installed %d kB\n' "$package" "$(($(stat -c %s "$package") / 1000))" \
        "$(dpkg-deb -f "$package" Installed-Size)"
done
