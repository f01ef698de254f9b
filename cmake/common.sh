# Sourced by all scripts: messages, tools, building a preset.

top=$(cd "$(dirname "$0")" && pwd -P)
until [ -f "$top/CMakePresets.json" ] || [ "$top" = / ]; do top=$(dirname "$top"); done
jobs=$(nproc 2>/dev/null || echo 2)

# The folder of all builds: MARVANE_BUILD, or build/ in the checkout.
case ${MARVANE_BUILD:-} in
'') builds="$top/build" ;;
/*) builds=$MARVANE_BUILD ;;
*) builds="$PWD/$MARVANE_BUILD" ;;
esac
# cmake/run-under-wine reads it too.
[ -z "${MARVANE_BUILD:-}" ] || export MARVANE_BUILD="$builds"

say() { printf '\n== %s\n' "$*"; }
fail() {
    printf '\n%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

# shown PATH: the path as a user would type it, from the checkout if it is there.
shown() { printf '%s' "${1#"$top"/}"; }

. "$top/cmake/tools.sh"

# need_build_folder: creates the folder of all builds; fails if nothing can be written there.
need_build_folder() {
    { mkdir -p "$builds" && touch "$builds/.writable"; } 2>/dev/null && rm -f "$builds/.writable" && return
    fail "$builds cannot be written. Name a folder for what is built: MARVANE_BUILD=\$HOME/marvane-build $0"
}

# show_progress UNIT LOG: copies standard input to LOG and shows how far the builder or the tester is: its own counter
# on a terminal, a line each tenth elsewhere.
show_progress() {
    tenth=0 total=0
    while IFS= read -r line; do
        printf '%s\n' "$line"
        case $line in
        "["[0-9]*/[0-9]*"]"*) counter=${line%%]*} counter=${counter#[} ;;
        *[0-9]/[0-9]*" Test "*"#"[0-9]*) counter=${line%% Test *} counter=${counter##* } ;;
        *) continue ;;
        esac
        case $counter in */*/* | *[!0-9/]*) continue ;; esac
        # A builder that finds more to do starts over.
        [ "$total" = "${counter#*/}" ] || tenth=0 total=${counter#*/}
        [ "$total" -gt 0 ] || continue
        if [ -t 2 ]; then
            printf '\r   %s %s' "$counter" "$1" >&2
        elif [ $((10 * ${counter%/*} / total)) -gt $tenth ]; then
            tenth=$((10 * ${counter%/*} / total))
            printf '   %s %s\n' "$counter" "$1" >&2
        fi
    done >"$2"
    [ ! -t 2 ] || printf '\r                        \r' >&2
}

# logged UNIT LOG COMMAND...: runs a command with its output in LOG and shows its progress; the command's status.
logged() {
    unit=$1 log=$2
    shift 2
    return "$({ { "$@" 2>&1 3>&-; echo $? >&3; } | show_progress "$unit" "$log"; } 3>&1)"
}

# configured_elsewhere PRESET: true if its build folder was configured by another checkout, or in another place.
configured_elsewhere() {
    cache="$builds/$1/CMakeCache.txt"
    [ -f "$cache" ] || return 1
    for entry in "CMAKE_HOME_DIRECTORY $top" "CMAKE_CACHEFILE_DIR $builds/$1"; do
        place=$(sed -n "s/^${entry%% *}:INTERNAL=//p" "$cache")
        [ "$(cd "$place" 2>/dev/null && pwd -P)" = "$(cd "${entry#* }" && pwd -P)" ] || return 0
    done
    return 1
}

# configure PRESET [cmake argument...]: afresh if this checkout has moved.
configure() {
    preset=$1
    shift
    if configured_elsewhere "$preset"; then
        echo "   $(shown "$builds/$preset") was configured in another place: configuring afresh"
        set -- --fresh "$@"
    fi
    (cd "$top" && cmake --preset "$preset" -B "$builds/$preset" "$@") >"$builds/$preset.log" 2>&1 || explain_build "$preset"
}

# explain_build PRESET: fails with the reason of a failed build, as far as it is known, and the end of its output.
explain_build() {
    log="$builds/$1.log"
    reason=""
    grep -q 'No space left on device' "$log" && reason="the disk is full: "
    grep -qE 'Permission denied|Read-only file system' "$log" && reason="a folder cannot be written: "
    echo "The last lines of the build:" >&2
    tail -n 40 "$log" >&2
    fail "${reason}the build of $1 failed; its complete output is in $(shown "$log")"
}

# lock_build PRESET, unlock_build: two runs build a preset one after the other. Without flock(1) they are not kept apart.
lock_build() {
    command -v flock >/dev/null 2>&1 || return 0
    exec 8>"$builds/$1.lock"
    flock -n 8 && return
    echo "   another run builds there: waiting for it"
    flock 8
}
unlock_build() { exec 8>&-; }

# run_builder PRESET [cmake build argument...]: builds a configured preset. Prints the compiler's output only if it fails.
run_builder() {
    preset=$1
    shift
    logged steps "$builds/$preset.log" cmake --build "$builds/$preset" -j "$jobs" "$@" || explain_build "$preset"
}

# build PRESET [cmake build argument...]: configures and builds a preset with its tests.
build() {
    say "Building $1 into $(shown "$builds/$1")"
    need_build_folder
    lock_build "$1"
    configure "$1"
    run_builder "$@"
    unlock_build
}

# build_programs PRESET TARGET...: builds only these. The tests, which need more tools, are configured only if they were.
build_programs() {
    say "Building $1 into $(shown "$builds/$1")"
    need_build_folder
    lock_build "$1"
    tests=OFF
    grep -qx 'MARVANE_TESTS:BOOL=ON' "$builds/$1/CMakeCache.txt" 2>/dev/null && tests=ON
    configure "$1" -DMARVANE_TESTS=$tests
    preset=$1
    shift
    run_builder "$preset" --target "$@"
    unlock_build
}

# prepare_wine [SUFFIX]: creates the prefix of cmake/run-under-wine[SUFFIX]. Wine does that at the first start of a
# program; programs that start in parallel would all try.
prepare_wine() {
    say "Preparing Wine"
    "$top/cmake/run-under-wine${1-}" wineboot -i >/dev/null 2>&1 || return 1
    "$top/cmake/run-under-wine${1-}" cmd /c exit >/dev/null 2>&1
}

# fetch_wine_x86: unpacks the 32-bit libraries of Wine into build/wine-x86, where cmake/run-under-wine-x86 finds them. They
# come from Debian's package for i386, by an apt with a configuration, state and cache of its own, so that the system
# need not be told of that architecture.
fetch_wine_x86() {
    folder="$builds/wine-x86"
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

# why_no_wine_x86: the reason why fetch_wine_x86 failed.
why_no_wine_x86() {
    if ! command -v apt-get >/dev/null 2>&1; then
        echo "the 32-bit libraries of Wine come from a package of Debian, and there is no apt-get here"
    elif [ -f "$builds/wine-x86/log" ] && lacks_network "$builds/wine-x86/log"; then
        echo "no network to fetch the 32-bit libraries of Wine"
    else
        echo "no package libwine for i386"
    fi
}
