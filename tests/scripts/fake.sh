# Sourced by tests/scripts/run: a copy of the checkout's scripts in $work/checkout, and in $work/bin the programs that
# it finds: those of every system, and fake tools.

basic_programs="sh awk basename cat chmod cp cut date dirname env expr find grep head id ln ls mkdir mktemp mv nproc readlink rm
    sed seq sleep sort tail touch tr uname wc xargs"
# Programs that tests use where they are, none of which is in $work/bin.
all_optional="zsh fish shellcheck sqlite3 tshark lnav chromium node npm"

# fake NAME SCRIPT: a program in bin/.
fake() {
    rm -f "$work/bin/$1"
    printf '#!/bin/sh\n%s\n' "$2" >"$work/bin/$1"
    chmod +x "$work/bin/$1"
}

# fake_cmake BUILD: a cmake that configures as little as the scripts need, and runs BUILD to build.
fake_cmake() {
    fake cmake "echo \"\$*\" >>'$work/cmake-calls'
case \$1 in
--version) echo 'cmake version 3.25.1'; exit ;;
--build) $1
    exit ;;
esac
folder=
while [ \$# -gt 0 ]; do
    [ \"\$1\" != -B ] || folder=\$2
    shift
done
mkdir -p \"\$folder/Testing/Temporary\"
printf 'CMAKE_HOME_DIRECTORY:INTERNAL=%s\nCMAKE_CACHEFILE_DIR:INTERNAL=%s\n' \"\$PWD\" \"\$folder\" >\"\$folder/CMakeCache.txt\""
}

# built_programs: the demo builds nothing, but gets the programs of the build that runs the tests.
built_programs() {
    [ -e "${MARVANE_PROGRAMS-}/diag_session" ] || { echo "Skipped: MARVANE_PROGRAMS names no build."; exit 77; }
    fake_cmake "cd \"\$2\" && cp -p $(for name in marvane diag_session libMarvane.so libSimVci.so; do
        printf "'%s' " "$MARVANE_PROGRAMS/$name"
    done) ."
}

# A log of ctest: a test that passed, programs of GoogleTest and Node with a skipped test, a script that skipped its own.
fake_test_log='1/4 Testing: Passing
Output:
Test Passed.
2/4 Testing: Program
../some_test.cpp:7: Skipped
bytes are names here
[  SKIPPED ] Some.Test (0 ms)
[  PASSED  ] 2 tests.
[  SKIPPED ] 1 test, listed below:
[  SKIPPED ] Some.Test
Test Passed.
3/4 Testing: web_packages
Skipped: npm is not installed (Debian packages nodejs and npm).
Test Passed.
4/4 Testing: web_lnav
ok 1 - the format file is valid
ok 2 - lnav opens the log # SKIP lnav is not installed (Debian package lnav)
# pass 1
# skipped 1
Test Passed.'

# make_checkout: the copy, and a system that has all that the Linux build needs.
make_checkout() {
    mkdir "$work/bin" "$work/checkout" || exit 1
    for program in $basic_programs; do ln -s "$(command -v "$program")" "$work/bin/$program" || exit 1; done
    (cd "$top" && cp -R check demo package CMakePresets.json cmake examples "$work/checkout")
    printf '%s\n' "$fake_test_log" >"$work/test-log"
    fake c++ "case \$* in *-print-file-name=*) echo '$work/test-log' ;; esac"
    fake ninja ':'
    fake_cmake 'for step in $(seq 20); do echo "[$step/20] Building"; done'
    fake ctest "echo ' 1/2 Test  #1: Passing ...   Passed    0.01 sec'
        echo ' 2/2 Test  #2: Program ...   Passed    0.01 sec'
        cp '$work/test-log' \"\$2/Testing/Temporary/LastTest.log\""
}

# budget_of STAGE: the minutes that ./check gives it.
budget_of() {
    sed -n "s/^[a-z_]*stages=\"\(.*\)\"/\1/p" "$top/check" | tr ' ' '\n' | sed -n "s/^$1://p" | head -n 1
}
