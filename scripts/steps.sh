# shellcheck shell=bash
# Sourced by .ci/run and test-all.sh after setup.sh: the steps of both, and how they are reported.

times=""
# step WHAT COMMAND...: reports what was done and how long it took.
step() {
    local what="$1" start="$SECONDS"
    shift
    "$@"
    times+="$what $((SECONDS - start)) s; "
    echo "$what: done in $((SECONDS - start)) s"
}

# check WHAT COMMAND...: a step after whose failure the others go on; the run fails at its end.
# report WHAT COMMAND...: the same, but its failure does not fail CI: it has not been seen to pass
# on an idle machine yet. test-all.sh fails for both.
#
# Both end after 10 minutes, which is a failure, so that CI ends in time; test-all.sh gives each an hour.
failures=0 reported=0 minutes=10
check() { attempt "$@" || failures=$((failures + 1)); }
report() { attempt "$@" || reported=$((reported + 1)); }
attempt() {
    local what="$1" start="$SECONDS" outcome="done" status=0
    shift
    if declare -F "$1" > /dev/null; then
        "$@" || status=$?
    else
        timeout --kill-after=30 "$minutes"m "$@" || status=$?
    fi
    [ "$status" -eq 0 ] || outcome="FAILED"
    [ "$status" -ne 124 ] || outcome="NOT FINISHED"
    times+="$what $outcome $((SECONDS - start)) s; "
    echo "$what: $outcome in $((SECONDS - start)) s"
    return "$status"
}
trap 'echo "${times}all $SECONDS s"' EXIT

# At once, which is quicker, and for steps that may not install anything.
install_all_packages() {
    # shellcheck disable=SC2086,SC2154 # lists of names, of setup.sh
    need_packages $packages_to_test $packages_for_valgrind $packages_for_determinism \
        $packages_for_coverage $packages_to_fuzz $packages_to_lint $packages_for_armhf_sysroot \
        $packages_to_build_armhf $packages_to_test_armhf $packages_to_test_packages $packages_for_api \
        $packages_for_qt6 $packages_to_make_image $packages_to_test_image
}

tests_of_root() {
    scripts/newcomer.sh --root ./test.sh \
        -R '^(tst_core_faults|tst_feed_loader|tst_journal_files|screen_to_use)$'
}

settings_and_memory() {
    report "Tests with other settings" scripts/newcomer.sh scripts/determinism.sh
    report "Tests under memcheck" scripts/newcomer.sh scripts/valgrind.sh \
        -R '^tst_(core_registry|core_settingsfile|listitem|listmodel|product_catalogue|product_record)$'
    check "Instructions of the hot paths" tests/budget/instructions.sh
    check "Pages of the interface" docs/build-api.sh
}

sanitizers_and_mutants() {
    report "Tests under the sanitizers" scripts/sanitizers.sh core listmodel models grid qml terminal/sales
    report "Mutants" tests/mutation/run.sh --sample 4
}

packages_and_fuzzers() {
    check "Packages" ./test-packages.sh
    report "Fuzzers" tests/fuzz/run.sh 15
}
