# Sourced by common.sh. The tools that the scripts need: how each is recognised, whatever system it comes from, and
# how it is installed.

build_tools="compiler cmake ninja cli11 zlib"
native_tools="$build_tools googletest expat"
native_x86_tools="compiler multilib zlib32 cmake ninja googletest cli11"
windows_build_tools="mingw mingw-zlib cmake ninja cli11"
windows_tools="$windows_build_tools googletest wine"
windows_x86_tools="mingw32 mingw-zlib cmake ninja cli11 googletest wine"
# The tests of completion in these shells are skipped without them, those of scripts without their analyser.
shell_tools="zsh fish shellcheck"
# Programs that read what is exported: tests open the exports with them.
reader_tools="sqlite3 tshark lnav chromium"
web_tools="node npm"
fuzz_tools="fuzzer cmake ninja cli11 zlib"

# The clang-format that decides; CONTRIBUTING.md names it too.
format_version=14
format_tools="clang-format-$format_version"

# tool_table: a line for each tool: its name, its packages in Debian with "+" between, what it is.
tool_table() {
    cat <<'TABLE'
compiler g++ a compiler for C++20 with its library, such as GCC 12 or clang 14
cmake cmake CMake 3.25 or newer
ninja ninja-build Ninja
cli11 libcli11-dev the headers of CLI11
zlib zlib1g-dev zlib with its headers
expat libexpat1-dev libexpat with its headers
googletest googletest the sources of GoogleTest in /usr/src/googletest
multilib g++-multilib the 32-bit part of the compiler
zlib32 lib32z1-dev the 32-bit zlib
mingw g++-mingw-w64-x86-64-posix+binutils-mingw-w64-x86-64 the cross compiler x86_64-w64-mingw32-g++-posix (mingw-w64)
mingw32 g++-mingw-w64-i686-posix+binutils-mingw-w64-i686 the cross compiler i686-w64-mingw32-g++-posix (mingw-w64)
mingw-zlib libz-mingw-w64-dev zlib for mingw-w64
wine wine+wine64 Wine with its 64-bit part
fuzzer clang+libclang-rt-14-dev clang with libFuzzer and the sanitizers
clang-format-14 clang-format-14 clang-format, version 14
sqlite3 sqlite3 sqlite3
tshark tshark tshark, Wireshark on the terminal
node nodejs Node.js
npm npm npm
dpkg-shlibdeps dpkg-dev dpkg-shlibdeps
benchmark libbenchmark-dev Google Benchmark with its headers
spdlog libspdlog-dev spdlog with its headers
hexdump bsdextrautils hexdump
time time time, the program
TABLE
}

# packages_of TOOL: its packages in Debian; the name of most programs is that of their package.
packages_of() { tool_table | awk -v tool="$1" '$1 == tool { found = $2 } END { gsub(/\+/, " ", found); print found ? found : tool }'; }

# host_compiler: the compiler that CMake would take.
host_compiler() {
    for name in "${CXX:-c++}" g++ clang++; do
        command -v "${name%% *}" >/dev/null 2>&1 && echo "$name" && return
    done
    return 1
}

# compiler_finds COMPILER HEADER: true if a program may include the header.
compiler_finds() {
    printf '#if !__has_include(<%s>)\n#error missing\n#endif\n' "$2" | $1 -E -x c++ -std=c++20 - >/dev/null 2>&1
}

# library_of COMPILER NAME: true if the compiler's linker would find that file.
library_of() {
    [ -f "$($1 -print-file-name="$2" 2>/dev/null)" ]
}

# at_least VERSION FOUND: compares two numbers of two parts.
at_least() {
    printf '%s\n%s\n' "$1" "$2" | awk -F. '{ number[NR] = $1 * 1000 + $2 } END { exit number[2] < number[1] }'
}

# version_of_cmake: nothing if there is no CMake.
version_of_cmake() { cmake --version 2>/dev/null | sed -n 's/^cmake version //p'; }

# finds_fuzzer: true if clang links programs for libFuzzer.
finds_fuzzer() {
    echo 'extern "C" int LLVMFuzzerTestOneInput(const unsigned char*, unsigned long) { return 0; }' |
        clang++ -x c++ -fsanitize=fuzzer,address -o /dev/null - >/dev/null 2>&1
}

# has_tool TOOL: true if the tool is here and new enough.
has_tool() {
    host=$(host_compiler)
    case $1 in
    compiler) [ -n "$host" ] && $host -std=c++20 -fsyntax-only "$top/cmake/cxx20.cpp" >/dev/null 2>&1 ;;
    cmake) at_least 3.25 "$(version_of_cmake)" ;;
    ninja) command -v ninja >/dev/null 2>&1 || command -v ninja-build >/dev/null 2>&1 ;;
    cli11) [ -f /usr/include/CLI/CLI.hpp ] || [ -f /usr/local/include/CLI/CLI.hpp ] ||
        [ -f "${CMAKE_PREFIX_PATH:-/usr}/include/CLI/CLI.hpp" ] ;;
    zlib) compiler_finds "$host" zlib.h ;;
    expat) compiler_finds "$host" expat.h ;;
    benchmark) compiler_finds "$host" benchmark/benchmark.h ;;
    spdlog) compiler_finds "$host" spdlog/spdlog.h ;;
    googletest) [ -f /usr/src/googletest/CMakeLists.txt ] ;;
    multilib) library_of "$host -m32" libstdc++.so && library_of "$host -m32" crt1.o ;;
    zlib32) library_of "$host -m32" libz.so ;;
    mingw) command -v x86_64-w64-mingw32-g++-posix >/dev/null 2>&1 ;;
    mingw32) command -v i686-w64-mingw32-g++-posix >/dev/null 2>&1 ;;
    mingw-zlib) library_of x86_64-w64-mingw32-g++-posix libz.a || library_of i686-w64-mingw32-g++-posix libz.a ;;
    wine) wine --version >/dev/null 2>&1 ;;
    fuzzer) finds_fuzzer ;;
    time) [ -x /usr/bin/time ] ;;
    *) command -v "$1" >/dev/null 2>&1 ;;
    esac
}

# missing_tools TOOL...: those that are not here or too old.
missing_tools() {
    for tool in "$@"; do
        has_tool "$tool" || printf '%s ' "$tool"
    done
}

# describe_missing TOOL...: a line for each, with the version of one that is too old.
describe_missing() {
    for tool in "$@"; do
        text=$(tool_table | sed -n "s/^$tool [^ ]* //p")
        found=""
        case $tool in
        cmake) found=$(version_of_cmake) && found=${found:+CMake $found} ;;
        compiler) found=$(host_compiler) && found=$($found --version 2>/dev/null | head -n 1) ;;
        esac
        printf '   %s%s\n' "${text:-$tool}" "${found:+ (too old: $found)}"
    done
}

# packages_for TOOL...: the packages of all of them.
packages_for() {
    for tool in "$@"; do packages_of "$tool"; done | tr '\n' ' ' | sed 's/ $//'
}

# say_how_to_install TOOL...: what is missing, and a line to copy.
say_how_to_install() {
    echo "Missing here:"
    describe_missing "$@"
    if command -v apt-get >/dev/null 2>&1; then
        echo "Install with:"
    else
        echo "Install these with this system's package manager. On Debian 12 it would be:"
    fi
    echo "   sudo apt-get update && sudo apt-get install -y --no-install-recommends $(packages_for "$@")"
}

# lacks_network LOG: true if what apt-get printed shows that no server was reached.
lacks_network() {
    grep -qE 'Temporary failure resolving|Could not resolve|Could not connect|Unable to connect|Network is unreachable' "$1"
}

# explain_apt LOG: why apt-get failed, and the end of what it printed.
explain_apt() {
    if lacks_network "$1"; then
        echo "There is no network: the package servers can't be reached."
    elif grep -qE 'Unable to locate package|no installation candidate' "$1"; then
        echo "This system's package servers do not have all of them:"
        grep -E 'Unable to locate package|no installation candidate' "$1" | sed 's/^E: /   /'
    elif grep -q 'Could not get lock' "$1"; then
        echo "Another program is installing packages at the moment. Try again when it has finished."
    else
        echo "apt-get failed. The last lines that it printed:"
        tail -n 20 "$1"
    fi
}

# run_apt PACKAGE...: installs packages of Debian; says why if that fails.
run_apt() {
    as_root=""
    [ "$(id -u)" = 0 ] || as_root=sudo
    say "Installing: $*"
    log=$(mktemp) || return 1
    $as_root apt-get update >"$log" 2>&1 &&
        $as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "$@" >>"$log" 2>&1
    status=$?
    [ $status = 0 ] || explain_apt "$log" >&2
    rm -f "$log"
    return $status
}

# can_install: true if there is apt-get and the right to use it.
can_install() {
    command -v apt-get >/dev/null 2>&1 && { [ "$(id -u)" = 0 ] || command -v sudo >/dev/null 2>&1; }
}

# need_tools TOOL...: installs the missing ones. If that is not possible, says what to do and fails.
need_tools() {
    missing=$(missing_tools "$@")
    [ -n "$missing" ] || return 0
    if can_install && run_apt $(packages_for $missing); then
        missing=$(missing_tools $missing)
        [ -n "$missing" ] || return 0
        { echo "The packages of this system do not bring what is needed:"; describe_missing $missing; } >&2
        return 1
    fi
    say_how_to_install $missing >&2
    return 1
}

# want_tools TOOL...: installs the missing ones if that is possible; tests that use them are skipped otherwise.
want_tools() {
    missing=$(missing_tools "$@")
    [ -n "$missing" ] || return 0
    can_install && run_apt $(packages_for $missing)
    missing=$(missing_tools $missing)
    [ -z "$missing" ] || echo "Tests that use these programs will be skipped: $missing"
}
