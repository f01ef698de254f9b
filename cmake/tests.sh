# Sourced by scripts that run tests: ctest with its progress, the tests counted, the skipped ones with their reasons.

# run_tests PRESET [ctest argument...]: runs the tests of a built preset in parallel. Prints what was skipped and why,
# and the output of those that failed. Adds a line "PASSED SKIPPED" to the file that $counts names, if it does.
run_tests() {
    preset=$1
    shift
    say "Testing $preset"
    rm -f "$builds/$preset/Testing/Temporary/LastTest.log"
    limit=300
    case $preset in windows*) limit=900 ;; esac # of a test that hangs: there a test is a whole program
    logged tests "$builds/$preset.tests.log" ctest --test-dir "$builds/$preset" -j "$jobs" --no-tests=error \
        --output-on-failure --timeout $limit "$@"
    outcome=$?
    awk -f "$top/cmake/count_tests.awk" "$builds/$preset/Testing/Temporary/LastTest.log" >"$builds/$preset.counts" 2>/dev/null
    [ -z "${counts:-}" ] || head -n 1 "$builds/$preset.counts" >>"$counts"
    report_tests "$builds/$preset.counts"
    [ $outcome = 0 ] || explain_tests "$preset"
    return $outcome
}

# report_tests COUNTS: says what count_tests.awk has found.
report_tests() {
    read -r passed skipped_tests <"$1"
    printf '   %s passed, %s skipped\n' "$passed" "$skipped_tests"
    sed 1d "$1"
}

# explain_tests PRESET: what ctest printed, but for the tests that passed.
explain_tests() {
    echo "Tests of $1 failed; what they printed (all of it: $(shown "$builds/$1.tests.log")):" >&2
    grep -vE '^ *Start +[0-9]+: |^ *[0-9]+/[0-9]+ Test .* Passed +[0-9.]+ sec' "$builds/$1.tests.log" >&2
}
