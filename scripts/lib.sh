# Shared by the scripts of this folder: what a bare Debian machine needs, and the builds.
# Sourced with the working directory at the top of the tree.

# commands and the files of libraries, each with the package that brings it
needed='
cmake          cmake
ninja          ninja-build
g++            g++
python3        python3
/usr/include/gtest/gtest.h             libgtest-dev
/usr/include/benchmark/benchmark.h     libbenchmark-dev
'

missing_packages() {
    printf '%s\n' "$needed" | while read -r what package; do
        case "$what" in
            "") ;;
            /*) [ -e "$what" ] || printf '%s ' "$package" ;;
            *) command -v "$what" >/dev/null 2>&1 || printf '%s ' "$package" ;;
        esac
    done
}

# Installs what is missing; touches neither network nor package system when nothing is.
install_needs() {
    packages=$(missing_packages)
    [ -n "$packages" ] || return 0
    command -v apt-get >/dev/null 2>&1 || {
        echo "Please install: $packages" >&2
        exit 1
    }
    as_root=
    if [ "$(id -u)" != 0 ]; then
        command -v sudo >/dev/null 2>&1 || {
            echo "Please run as root, or install: $packages" >&2
            exit 1
        }
        as_root=sudo
    fi
    echo "Installing: $packages" >&2
    $as_root apt-get update -qq
    # shellcheck disable=SC2086 # one word for each package
    $as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $packages
}

# build <preset> <targets, separated by blanks; none for all> [cmake options]: what the build writes is shown when it fails.
build() {
    preset=$1 targets=$2
    shift 2
    mkdir -p "build/$preset"
    log=build/$preset/build.log
    # shellcheck disable=SC2086 # one word for each target
    { cmake --preset "$preset" "$@" && cmake --build "build/$preset" ${targets:+--target $targets}; } >"$log" 2>&1 || {
        cat "$log" >&2
        exit 1
    }
}
