# shellcheck shell=sh
# Functions that the scripts share. Set $here to the project's folder before calling them. Sourcing
# this file runs nothing.

say() {
    printf '%s\n' "$*"
}

# show [word...]: replaces the progress line. Does nothing without a terminal.
show() {
    if [ -t 2 ]; then
        printf '\r%-70.70s\r' "$*" >&2
    elif [ -t 1 ]; then
        printf '\r%-70.70s\r' "$*"
    fi
}

# show_progress <log>: copies its input to the log and shows the progress of apt and ninja. Fails if the
# input has the line "failed!", because an exit status does not pass through a pipe.
show_progress() {
    trap '' INT # after Ctrl-C apt finishes its current step and still writes
    outcome=0
    while IFS= read -r line; do
        case $line in
        \[*/*\]*)
            count=${line%%]*}
            show "  step ${count#?}"
            ;;
        dlstatus:*) show "  ${line##*:}" ;;
        pmstatus:*)
            percent=${line%:*}
            percent=${percent##*:}
            show "  ${percent%.*}% ${line##*:}"
            ;;
        failed!) outcome=1 && continue ;;
        esac
        printf '%s\n' "$line" >&3
    done 3>"$1"
    show
    return "$outcome"
}

# logged <name> <command> [argument...]: runs the command with its output in build/<name>.log. If it
# fails, prints the end of the log and exits.
logged() {
    log=${here:?}/build/$1.log
    shift
    mkdir -p "$here/build"
    if [ -t 1 ] || [ -t 2 ]; then
        trap 'exit 130' INT
        { "$@" 2>&1 || echo failed!; } | show_progress "$log" && trap - INT && return
    else
        "$@" >"$log" 2>&1 && return
    fi
    grep -av '^[dp][lm]status:' "$log" | tail -n 40 >&2
    say "Failed. The full log is in $log" >&2
    exit 1
}

# as_root <command> [argument...]: runs the command as root, with sudo if necessary.
as_root() {
    if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# install_missing <package>...: installs the Debian packages that are not installed yet.
install_missing() {
    missing=
    for package in "$@"; do
        [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] ||
            missing="$missing $package"
    done
    [ -n "$missing" ] || return 0
    say "Installing missing packages:$missing" >&2
    # shellcheck disable=SC2086 # a list of names
    logged packages apt_install $missing
}

# apt reports its status on descriptor 3, not on stdout: apt 3 closes the status descriptor in packages'
# scripts, which could not print otherwise. The inner shell opens descriptor 3, because sudo closes all
# above 2.
apt_install() {
    as_root apt-get update -qq -o APT::Status-Fd=1 &&
        as_root sh -c 'DEBIAN_FRONTEND=noninteractive exec apt-get install -y -qq \
            --no-install-recommends -o APT::Status-Fd=3 -o Dpkg::Use-Pty=0 "$@" 3>&1' sh "$@"
}

# fonts-wqy-microhei has the Chinese characters; x11-utils has xdpyinfo, which ./run uses to find a
# display.
install_build_tools() {
    install_missing g++ cmake ninja-build qtbase5-dev libqt5svg5-dev qttools5-dev \
        fonts-dejavu-core fonts-wqy-microhei x11-utils
}

# build_preset <preset> <targets> [configure option...]: configures and builds in build/<preset>.
build_preset() {
    say "Building." >&2
    logged "$1" configure_and_build "$@"
}

configure_and_build() {
    preset=$1 targets=$2
    shift 2
    # shellcheck disable=SC2086 # a list of names
    cmake -S "$here" --preset "$preset" "$@" &&
        cmake --build "$here/build/$preset" --target $targets
}

# build_example <source folder> <build folder> [prefix]: builds an example against the installation in
# the prefix, or in /usr.
build_example() {
    logged "${1##*/}" configure_and_build_example "$@"
}

configure_and_build_example() {
    cmake -G Ninja -S "$1" -B "$2" -DCMAKE_PREFIX_PATH="${3-}" -DCMAKE_EXPORT_COMPILE_COMMANDS=ON \
        -DCMAKE_CXX_FLAGS="-Wall -Wextra -Wpedantic -Wshadow" \
        -DCMAKE_COMPILE_WARNING_AS_ERROR=ON &&
        cmake --build "$2"
}
