# Shared by all scripts: messages, installing missing packages, building a preset.

top=$(cd "$(dirname "$0")" && pwd)
jobs=$(nproc 2>/dev/null || echo 2)

say() { printf '\n== %s\n' "$*"; }
fail() {
    printf '\n%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

native_packages="g++ cmake ninja-build googletest libcli11-dev zlib1g-dev libexpat1-dev"
# The tests of completion in these shells are skipped without them.
shell_packages="zsh fish"
# Programs that read what is exported: tests open the exports with them.
reader_packages="sqlite3 tshark lnav chromium"
web_packages="nodejs npm"
native_x86_packages="g++-multilib lib32z1-dev cmake ninja-build googletest libcli11-dev"
windows_packages="g++-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64 libz-mingw-w64-dev libcli11-dev wine wine64"
windows_x86_packages="g++-mingw-w64-i686-posix binutils-mingw-w64-i686 libz-mingw-w64-dev libcli11-dev wine wine64"
fuzz_packages="clang libclang-rt-14-dev"

# The clang-format that decides; CONTRIBUTING.md names it too.
format_version=14
format_packages="clang-format-$format_version"

# install_packages NAME...: installs the missing ones of these Debian packages. Fails if that is not possible.
install_packages() {
    missing=""
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing="$missing $package"
    done
    [ -z "$missing" ] && return 0
    command -v apt-get >/dev/null 2>&1 || {
        echo "There is no apt-get here. Install these Debian packages, or their equivalents on this system:$missing" >&2
        return 1
    }
    as_root=""
    if [ "$(id -u)" != 0 ]; then
        command -v sudo >/dev/null 2>&1 || {
            echo "Installing packages needs root or sudo. Missing are:$missing" >&2
            return 1
        }
        as_root=sudo
    fi
    say "Installing:$missing"
    log=$(mktemp)
    if $as_root apt-get update >"$log" 2>&1 &&
        $as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends $missing >>"$log" 2>&1
    then
        rm -f "$log"
        return 0
    fi
    tail -n 20 "$log" >&2
    echo "apt-get failed; its complete output is in $log" >&2
    return 1
}

# show_progress LOG: copies standard input to LOG and shows how far the builder is: its own counter on a terminal,
# a line each tenth elsewhere.
show_progress() {
    tenth=0
    while IFS= read -r line; do
        printf '%s\n' "$line"
        case $line in "["[0-9]*/[0-9]*"]"*) ;; *) continue ;; esac
        counter=${line%%]*}
        counter=${counter#[}
        if [ -t 2 ]; then
            printf '\r   %s steps' "$counter" >&2
        elif [ $((10 * ${counter%/*} / ${counter#*/})) -gt $tenth ]; then
            tenth=$((10 * ${counter%/*} / ${counter#*/}))
            printf '   %s steps\n' "$counter" >&2
        fi
    done >"$1"
    [ ! -t 2 ] || printf '\r                        \r' >&2
}

# configure_and_build PRESET [cmake build argument...]: fails if one of the two does.
configure_and_build() {
    preset=$1
    shift
    cd "$top" && cmake --preset "$preset" && cmake --build --preset "$preset" -j "$jobs" "$@"
}

# build PRESET [cmake build argument...]: configures and builds a preset. Prints the compiler's output only if it
# fails.
build() {
    say "Building $1 into build/$1"
    mkdir -p "$top/build" || fail "cannot write to $top/build"
    log="$top/build/$1.log"
    result=$({ { configure_and_build "$@" 2>&1; echo $? >&3; } | show_progress "$log"; } 3>&1)
    [ "$result" = 0 ] || {
        echo "The last lines of the build:" >&2
        tail -n 40 "$log" >&2
        fail "the build of $1 failed; its complete output is in build/$1.log"
    }
}

# prepare_wine [SUFFIX]: creates the prefix of cmake/run-under-wine[SUFFIX]. Wine does that at the first start of a
# program; programs that start in parallel would all try.
prepare_wine() {
    say "Preparing Wine (the first time takes a minute)"
    "$top/cmake/run-under-wine${1-}" wineboot -i >/dev/null 2>&1 || return 1
    "$top/cmake/run-under-wine${1-}" cmd /c exit >/dev/null 2>&1
}

# fetch_wine_x86: unpacks the 32-bit libraries of Wine into build/wine-x86, where cmake/run-under-wine-x86 finds them. They
# come from Debian's package for i386, by an apt with a configuration, state and cache of its own, so that the system
# need not be told of that architecture.
fetch_wine_x86() {
    folder="$top/build/wine-x86"
    [ -f "$folder/complete" ] && return 0
    command -v apt-get >/dev/null 2>&1 || return 1
    say "Fetching the 32-bit libraries of Wine (95 MB)"
    rm -rf "$folder"
    mkdir -p "$folder/state/lists/partial" "$folder/cache/archives/partial" || return 1
    : >"$folder/state/status"
    cat >"$folder/apt.conf" <<CONF
APT::Architecture "i386";
#clear APT::Architectures;
APT::Architectures { "i386"; };
APT::Sandbox::User "root";
Acquire::Languages "none";
Dir::State "$folder/state";
Dir::State::status "$folder/state/status";
Dir::Cache "$folder/cache";
CONF
    # An update fails as a whole if one of the system's sources has nothing for i386, so only the download counts.
    # The system's own Wine and these libraries should be of one version.
    version=$(dpkg-query -W -f='${Version}' "libwine:$(dpkg --print-architecture)" 2>/dev/null)
    (cd "$folder" && export APT_CONFIG="$folder/apt.conf" && apt-get update
        apt-get download "libwine=$version" || apt-get download libwine) >"$folder/log" 2>&1
    package=$(find "$folder" -maxdepth 1 -name 'libwine_*.deb')
    [ -n "$package" ] || return 1
    dpkg-deb -x "$package" "$folder" >>"$folder/log" 2>&1 || return 1
    rm -rf "$package" "$folder/state" "$folder/cache"
    : >"$folder/complete"
}
