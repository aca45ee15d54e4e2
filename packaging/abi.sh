# shellcheck shell=bash
# Functions of the scripts that compare the ABI of libGuiCore.so. Source it in the root of the
# repository.

# abi_file LIBRARY: prints the file with the stored description for the architecture of the library.
abi_file() {
    local machine
    case "$(LC_ALL=C readelf -h "$1" | sed -n 's/^ *Machine: *//p')" in
        *X86-64) machine=amd64 ;;
        AArch64) machine=arm64 ;;
        ARM) machine=armhf ;;
        *) echo "$1 is for a machine without a description" >&2; return 1 ;;
    esac
    echo "packaging/abi/libGuiCore-$machine.abi"
}

# build_abi PRESET: builds the library from which the ABI is described, and sets `library` to its file.
build_abi() {
    configure_packages "$1"
    quietly "Building the library of preset $1" cmake --build "build/package-$1" --target GuiCoreAbi
    # shellcheck disable=SC2034 # for the caller
    library="build/package-$1/GuiCore/abi/libGuiCore.so"
}

# describe_abi LIBRARY FILE: writes symbols and types into the file, from the library's debug
# information, without paths, lines and versions of the machine that built the library.
describe_abi() {
    readelf -S --wide "$1" | grep -qF .debug_info || {
        echo "$1 has no debug information to describe its ABI from" >&2
        return 1
    }
    abidw --exported-interfaces-only --no-elf-needed --no-corpus-path --no-comp-dir-path \
        --no-show-locs --type-id-style hash --out-file "$2" "$1"
}

# product_layout FILE: prints size and fields of sProduct from a description. The functions of the
# library take lists of sProduct, and abidiff does not compare the elements of lists.
product_layout() {
    sed -n "/<class-decl name='sProduct'/,/<\/class-decl>/p" "$1" |
        sed -nE "s/.*<class-decl name='(sProduct)' size-in-bits='([0-9]+)'.*/\1: \2 bits/p
                 s/.*<data-member .*layout-offset-in-bits='([0-9]+)'.*/\1/p
                 s/.*<var-decl name='([^']+)' type-id='([^']+)'.*/    \1 (\2)/p"
}

# compare_abi LIBRARY: fails on a change that is incompatible with the stored description, and prints
# the change. Additions are compatible.
compare_abi() {
    local stored described status=0
    stored="$(abi_file "$1")"
    [ -f "$stored" ] || { echo "There is no $stored: packaging/accept-abi.sh makes it" >&2; return 1; }
    described="$(mktemp)"
    describe_abi "$1" "$described" || { rm -f "$described"; return 1; }
    abidiff --no-added-syms --suppressions packaging/abi/others.suppr "$stored" "$described" || status=$?
    diff <(product_layout "$stored") <(product_layout "$described") || status=1
    rm -f "$described"
    [ "$status" -eq 0 ] && return 0
    echo "Applications built with the last release may break. packaging/accept-abi.sh accepts it:" \
        "then raise the major version, which is in the library's name." >&2
    return 1
}
