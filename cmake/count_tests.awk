# Counts the tests in ctest's LastTest.log. An entry there is one test, or a program of GoogleTest or of Node's runner that
# reports how many it ran. Prints "PASSED SKIPPED", then a line for each reason of skipped tests, with their number.

function end_entry() {
    if (!entry)
        return
    if (!reported)
        skips ? skipped++ : (good ? passed++ : 0)
    else {
        passed += own_passed
        skipped += own_skipped
    }
}

{ sub(/\r$/, "") }

/^[0-9]+\/[0-9]+ Testing: / { end_entry(); entry = 1; reported = good = skips = own_passed = own_skipped = 0 }

# The line after GoogleTest's place of a skip holds the reason.
after_place { reasons[$0]++; after_place = 0 }
/: Skipped$/ { after_place = 1 }

# A script that skips its test.
/^Skipped: / { reasons[substr($0, 10)]++; skips = 1 }

# The last of these is the program's own; its child processes may print them too.
/^\[  PASSED  \] [0-9]+ test/ { reported = 1; own_passed = $4 }
/^\[  SKIPPED \] [0-9]+ test/ { own_skipped = $4 }

# Node's runner.
/^ok .* # SKIP / { reasons[substr($0, index($0, " # SKIP ") + 8)]++ }
/^# pass [0-9]+$/ { reported = 1; own_passed = $3 }
/^# skipped [0-9]+$/ { own_skipped = $3 }

/^Test Passed\.$/ { good = 1 }

END {
    end_entry()
    print passed + 0, skipped + 0
    for (reason in reasons)
        printf "   %5d skipped: %s\n", reasons[reason], reason | "sort -k3"
}
