# shellcheck shell=bash
# What the scripts about the ABI of libGuiCore.so share. Source it in the root of the repository.

# abi_file LIBRARY: the stored description for the machine that the library is for.
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

# build_abi PRESET: builds what the ABI is described from, and sets library to it.
build_abi() {
    configure_packages "$1"
    quietly "Building the library of preset $1" cmake --build "build/package-$1" --target GuiCoreAbi
    # shellcheck disable=SC2034 # for the caller
    library="build/package-$1/GuiCore/abi/libGuiCore.so"
}

# describe_abi LIBRARY FILE: symbols and types, from the library's debug information; without paths,
# lines and versions of the machine that built it.
describe_abi() {
    readelf -S --wide "$1" | grep -qF .debug_info || {
        echo "$1 has no debug information to describe its ABI from" >&2
        return 1
    }
    abidw --exported-interfaces-only --no-elf-needed --no-corpus-path --no-comp-dir-path \
        --no-show-locs --type-id-style hash --out-file "$2" "$1"
}

# product_layout FILE: size and fields of sProduct as described. Only lists of it cross the boundary,
# and abidiff does not look into what those point to.
product_layout() {
    sed -n "/<class-decl name='sProduct'/,/<\/class-decl>/p" "$1" |
        sed -nE "s/.*<class-decl name='(sProduct)' size-in-bits='([0-9]+)'.*/\1: \2 bits/p
                 s/.*<data-member .*layout-offset-in-bits='([0-9]+)'.*/\1/p
                 s/.*<var-decl name='([^']+)' type-id='([^']+)'.*/    \1 (\2)/p"
}

# compare_abi LIBRARY: prints what is incompatible with the stored description and fails. What was
# added breaks no application.
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
