#!/usr/bin/env bash
# Mutation testing: one small mistake at a time in a private copy of GuiCore/src and Core, the
# libraries built again, the tests run until one fails. A mutant that no test notices survives.
#
#   tests/mutation/run.sh [--sample N] [--seed S] [--file F]... [--part K/N] [--list] [--survivors]
#
#   --sample N    N mutants in an order that the seed decides, instead of all
#   --seed S      a number; without it each commit has one of its own
#   --file F      only mutants of this file
#   --part K/N    of those the Kth, then every Nth: for several machines
#   --list        print the mutants, build nothing
#   --survivors   try those again that survived
#
# The tests of the configuration follow every folder above their own: below one in which others are
# busy, such as /tmp, their noise lets mutants of Core/FileFollower.cpp survive.
#
# Verdicts are kept in build/mutation/results.tsv as long as neither the libraries nor the tests
# change, so that an interrupted run goes on where it was. The exit code is 1 if a mutant survived that
# equivalent.txt does not explain, and fewer than 97 % were killed.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
# shellcheck source=scripts/setup.sh
. scripts/setup.sh
here=tests/mutation
place=build/mutation
results="$place/results.tsv"
sample=0 seed="" part=1 parts=1 list=false survivors=false files=()
while [ $# -gt 0 ]; do
    case "$1" in
    --sample) sample="$2"; shift ;;
    --seed) seed="$2"; shift ;;
    --file) files+=("$2"); shift ;;
    --part) part="${2%/*}" parts="${2#*/}"; shift ;;
    --list) list=true ;;
    --survivors) survivors=true ;;
    *) sed -n '2,/^set/{/^#/s/^# \{0,1\}//p}' "$0"; exit 2 ;;
    esac
    shift
done
# RowSync.h is a template that only its users compile, and those are not built again.
[ "${#files[@]}" -gt 0 ] || mapfile -t files < <(git ls-files 'GuiCore/src/*.cpp' 'GuiCore/src/*.h' \
    'GuiCore/include/core/*.h' 'Core/*.cpp' 'Core/*.h' ':!*Qt6.cpp' ':!*/RowSync.h')
# shellcheck disable=SC2086 # a list of names
need_packages $packages_to_test
mkdir -p "$place"
mutate="$place/mutate"
[ -n "$(find "$mutate" -newer $here/mutate.cpp -newer $here/Mutations.cpp -newer $here/Source.cpp \
    -newer $here/Source.h 2> /dev/null)" ] || g++ -std=c++17 -O1 $here/*.cpp -o "$mutate"

# What the tests were compiled with stays as it was in a header: declarations and what inline functions
# return are not mutated there, and headers are at most a twentieth of a sample, for each makes many files be built again.
chosen="$(mktemp)"
trap 'rm -f "$chosen"' EXIT
if [ "$sample" -eq 0 ]; then
    seed=0
elif [ -z "$seed" ]; then
    commit="$(git rev-parse --short=7 HEAD)"
    seed=$((16#${commit:0:7}))
fi
"$mutate" list "$seed" "${files[@]}" | awk -F '\t' -v sample="$sample" -v part="$part" -v parts="$parts" '
    $2 ~ /\.h$/ && ($4 == "swapped argument" || $4 == "removed statement" || $4 == "return value") { next }
    $2 ~ /\.h$/ && sample && ++headers > sample / 40 { next }
    (++count <= sample || !sample) && count % parts == part % parts' > "$chosen"
if $list; then
    cut -f 1-6 "$chosen"
    exit 0
fi
[ "$sample" -eq 0 ] || echo "seed $seed"
judged="$(git ls-files -z GuiCore Core tests cmake CMakeLists.txt | xargs -0 sha256sum | sha256sum)"
if [ "$(cat "$place/judged" 2> /dev/null)" != "$judged" ]; then
    : > "$results"
    echo "$judged" > "$place/judged"
fi
if $survivors; then
    again="$(awk -F '\t' 'NR == FNR { verdict[$1] = $2; next } verdict[$1] == "survived"' "$results" "$chosen")"
    awk -F '\t' '$2 != "survived"' "$results" > "$results.new" && mv "$results.new" "$results"
    printf '%s\n' "$again" > "$chosen"
fi

tree="$place/0/tree" out="$place/0/out"
export CMAKE_BUILD_PARALLEL_LEVEL=2
export RIVO_SOAK_DIVISOR=10 RIVO_LAYOUT_CASES=1500
mkdir -p "$tree"
# What an interrupted run left changed.
if [ -s "$place/mutated" ]; then
    read -r file < "$place/mutated"
    cp "$file" "$tree/$file"
fi
# Changed files only, so that a second run builds little.
while IFS= read -r -d '' file; do
    if [ -f "$file" ] && ! cmp -s "$file" "$tree/$file"; then
        mkdir -p "$tree/$(dirname "$file")"
        cp -p "$file" "$tree/$file"
        touch "$tree/$file"
    fi
done < <(git ls-files -z)
quicker=()
command -v ccache > /dev/null && quicker+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
if command -v ld.lld > /dev/null; then
    for what in EXE SHARED MODULE; do
        quicker+=("-DCMAKE_${what}_LINKER_FLAGS=-fuse-ld=lld")
    done
fi
# The tests of the libraries themselves: those through QML, the feeds and the terminal take long and
# notice little more.
cmake -G Ninja -S "$tree" -B "$out" "${quicker[@]}" -DCMAKE_BUILD_TYPE= \
    -DCMAKE_CXX_FLAGS="-O0 -g0" -DCMAKE_LINK_DEPENDS_NO_SHARED=ON -DGUICORE_BUILD_QML=OFF \
    -DGUICORE_BUILD_FEED=OFF -DGUICORE_BUILD_TERMINAL=OFF -DGUICORE_BUILD_TOOLS=OFF \
    -DCMAKE_PROJECT_INCLUDE="$PWD/$here/libraries.cmake" > "$place/configure.log"
# A mutant is built once.
export CCACHE_DISABLE=1

# Projects that are configured and built by a test, and what looks at texts only, notice nothing more.
none='^(core_imported_library|core_other_macros|core_logging_header_comes_first)$'
# run_tests REGEX: the first test that fails goes to standard output, and the status is 1.
run_tests() {
    local log="$place/ctest.log"
    (ulimit -v 8000000; exec ctest --test-dir "$out" --timeout 60 --stop-on-failure --no-tests=ignore -E "$none" -R "$1") \
        > "$log" 2>&1 && return 0
    awk '/\*\*\*/ { for (i = 1; i <= NF; ++i) if ($i ~ /^(tst_|qml|core_|[a-z_]+$)/) { print $i (/Timeout/ ? ", timed out" : ""); exit } }' "$log"
    return 1
}
# The tests that know the file best, then their neighbours, then all, one regular expression a line.
stages() {
    local name file="${1/_p.h/.h}" # a private header, as its class
    name="$(basename "$file")"
    name="${name%.*}"
    name="${name,,}"
    case "$file" in
    */ConfigManager.*) echo '^tst_core_(config|lifecycle)$' ;;
    */FileFollower.*) echo '^tst_core_(follow|config)$' ;;
    */Logger*) echo '^tst_core_(logging|library)$' ;;
    */SettingsFile.* | */RegularFile.*) echo '^tst_core_(settingsfile|config)$' ;;
    */JsonObjectFactory.*) echo '^tst_core_registry$' ;;
    */SettingsConfig*) echo '^tst_core_config$' ;;
    */ListModel/*) echo '^tst_(listitem|listmodel.*|role_value_order)$' ;;
    */PassengerTypesModel*.* | */*Layout.* | */ZoneIndex.* | */ProductSort.* | */ProductDump.* | \
        */sProduct.* | */addProduct.*)
        echo '^tst_(product_catalogue|product_record|passengertypesmodel|grid_cases)$'
        echo '^tst_(grid_logging|layout_reentrancy|layout_property)$' ;;
    *) echo "^tst_(every_item|$name)\$" ;;
    esac
    case "$1" in
    Core/* | GuiCore/include/*) echo '^tst_core_' ;;
    *) echo '^tst_(every_model|.*item|.*model|listmodel.*|row_memory)$' ;;
    esac
    echo '.'
}

# build REGEX: the libraries, and those programs of these tests that are not up to date; all for ".".
build() {
    local targets=(GuiCore RivoCore)
    if [ "$1" = . ]; then
        targets=(all)
    else
        mapfile -t -O 2 targets < <(ctest --test-dir "$out" -N -R "$1" | awk '/Test +#/ { print $NF }')
    fi
    timeout 1200 ninja -C "$out" "${targets[@]}" > "$place/build.log" 2>&1
}

# What fails without a mutation notices none: each group of tests is tried on the unchanged file
# before it judges the first mutant. Few mutants need few groups, and the programs of those alone.
declare -A tried=()
try_unchanged() {
    local file="$1" expression="$2" failed
    [ -z "${tried[$expression]:-}" ] || return 0
    cmp -s "$file" "$tree/$file" || cp "$file" "$tree/$file"
    build "$expression" || { tail -40 "$place/build.log" >&2; exit 1; }
    failed="$(run_tests "$expression")" || {
        echo "Without a mutation already fails: $failed" >&2
        tail -40 "$place/ctest.log" >&2
        exit 1
    }
    tried[$expression]=1
}

# judge ID FILE: sets verdict, to what became of the mutant, a tabulator and which test it was.
judge() {
    local id="$1" file="$2" expressions expression killer
    mapfile -t expressions < <(stages "$file")
    # A header makes many files be built again: for it, the tests that know it best.
    [[ "$file" != *.h ]] || expressions=("${expressions[0]}")
    for expression in "${expressions[@]}"; do
        try_unchanged "$file" "$expression"
        "$mutate" apply "$id" "$file" > "$place/mutant"
        cmp -s "$place/mutant" "$tree/$file" || cp "$place/mutant" "$tree/$file"
        build "$expression" || { verdict=$'does not compile\t-'; return; }
        killer="$(run_tests "$expression")" || { verdict=$'killed\t'"${killer:--}"; return; }
    done
    verdict=$'survived\t-'
}

total="$(wc -l < "$chosen")"
number=0
while IFS=$'\t' read -r -u 9 id file line kind before after; do
    number=$((number + 1))
    grep -q "^$id	" "$results" && continue
    echo "$file" > "$place/mutated"
    judge "$id" "$file"
    cp "$file" "$tree/$file"
    printf '%s\t%s\t%s\t%s\t%s\t%s\t%s\n' "$id" "$verdict" "$file" "$line" "$kind" "$before" "$after" >> "$results"
    printf '%d/%d %s %s:%s %s (%s)\n' "$number" "$total" "$id" "$file" "$line" "$kind" "${verdict//$'\t'/ by }"
    case "$verdict" in survived*) printf -- '- %s\n+ %s\n' "$before" "$after" ;; esac
done 9< "$chosen"

# The summary, of the chosen ones alone. equivalent.txt: blocks of a file, "- before", "+ after" and
# the reason.
awk -F '\t' -v equivalents="$here/equivalent.txt" '
    BEGIN {
        while ((getline line < equivalents) > 0) {
            if (line ~ /^- /) before = substr(line, 3)
            else if (line ~ /^\+ /) known[file "\t" before "\t" substr(line, 3)] = 1
            else if (line ~ /^[A-Za-z].*\.(cpp|h)$/) file = line
        }
    }
    FILENAME == ARGV[1] { chosen[$1] = 1; next }
    $1 in chosen {
        verdict = $2
        if (verdict == "survived" && ($4 "\t" $7 "\t" $8) in known)
            verdict = "equivalent"
        ++count[verdict]
        if (verdict == "survived")
            printf "survived: %s %s:%s %s\n- %s\n+ %s\n", $1, $4, $5, $6, $7, $8
    }
    END {
        judged = count["killed"] + count["survived"]
        rate = judged ? 100 * count["killed"] / judged : 0
        printf "%d mutants: %d killed, %d survived, %d equivalent; %d more do not compile; %.1f %% killed\n",
            judged + count["equivalent"], count["killed"], count["survived"], count["equivalent"],
            count["does not compile"], rate
        exit judged && rate < 97
    }' "$chosen" "$results"
