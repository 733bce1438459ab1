# The set-up that the scripts share, sourced with $here set to the project's folder: installs the
# Debian packages that are missing, with those in $packages, and builds $preset. Leaves the build in
# $build.

say() {
    printf '%s\n' "$*"
}

# install_missing <package>...
install_missing() {
    missing=
    for package in "$@"; do
        [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] ||
            missing="$missing $package"
    done
    [ -n "$missing" ] || return 0
    say "Installing what is missing:$missing"
    root=
    [ "$(id -u)" -eq 0 ] || root=sudo
    $root apt-get update -qq
    # shellcheck disable=SC2086 # a list of names
    $root env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends $missing >/dev/null
}

# build_preset <preset> [cmake option...]: configures and builds it.
build_preset() {
    chosen=$1
    shift
    log="$here/build/$chosen.log"
    mkdir -p "$here/build"
    if ! (cd "$here" && cmake --preset "$chosen" "$@" && cmake --build --preset "$chosen") \
        >"$log" 2>&1; then
        tail -n 40 "$log" >&2
        say "The build failed; the whole log is in $log" >&2
        exit 1
    fi
}

# The compiler and Qt; fonts-wqy-microhei for Chinese, x11-utils to see whether there is a display.
# shellcheck disable=SC2086 # a list of names
install_missing g++ cmake ninja-build qtbase5-dev libqt5svg5-dev qttools5-dev \
    fonts-dejavu-core fonts-wqy-microhei x11-utils ${packages:-}

: "${preset:=release}"
build="$here/build/$preset"
say "Building." >&2
build_preset "$preset"
