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

# show_progress <log>: copies its input to the log and shows the progress of apt and ninja. Returns the
# number in the line "status: <number>", because an exit status does not pass through a pipe.
show_progress() {
    # After Ctrl-C apt finishes its current step, which may take a minute, and still writes. Ctrl-C also
    # interrupts the read.
    trap 'interrupted=yes; show; say "Stopping after the current step." >&2' INT
    interrupted=
    outcome=1
    while IFS= read -r line || [ -n "$interrupted" ]; do
        interrupted=
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
        "status: "*) outcome=${line#status: } && continue ;;
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
    trap 'exit 130' INT # after the pipeline has ended
    {
        status=0
        "$@" 2>&1 || status=$?
        printf '\nstatus: %s\n' "$status"
    } | show_progress "$log" && return
    [ $? -ne 130 ] || exit 130
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
    # dpkg leaves files here if it was interrupted. apt then refuses to work.
    if [ -n "$(ls -A /var/lib/dpkg/updates)" ]; then
        say "An earlier installation was interrupted. Run this as root, then try again:" >&2
        say "  dpkg --configure -a" >&2
        exit 1
    elif [ "$(id -u)" -ne 0 ] && ! command -v sudo >/dev/null; then
        say "Packages are missing, and there is no sudo. Run this as root, then try again:" >&2
        say "  apt-get update && apt-get install --no-install-recommends$missing" >&2
        exit 1
    fi
    say "Installing missing packages:$missing" >&2
    # shellcheck disable=SC2086 # a list of names
    logged packages apt_install $missing
}

# apt reports its status on descriptor 3, not on stdout: apt 3 closes the status descriptor in packages'
# scripts, which could not print otherwise. The inner shell opens descriptor 3, because sudo closes all
# above 2.
#
# apt gives dpkg a terminal of its own, so Ctrl-C does not stop dpkg half-way. Because stdin is not the
# terminal, sudo and apt leave its settings alone: Ctrl-C always reaches this script, too.
apt_install() {
    {
        as_root apt-get update -qq -o APT::Status-Fd=1 &&
            as_root sh -c 'DEBIAN_FRONTEND=noninteractive exec apt-get install -y -qq \
                --no-install-recommends -o APT::Status-Fd=3 "$@" 3>&1' sh "$@"
    } </dev/null
}

# install_build_tools [package...]: installs what builds need, and the given packages.
# fonts-wqy-microhei has the Chinese characters.
install_build_tools() {
    install_missing g++ cmake ninja-build qtbase5-dev libqt5svg5-dev qttools5-dev \
        fonts-dejavu-core fonts-wqy-microhei "$@"
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
