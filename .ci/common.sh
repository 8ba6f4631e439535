# shellcheck shell=sh
# Shared by the scripts: what a build requires, how that is installed, quiet builds, and --help. Expects $root,
# the directory of the sources, and set -eu. Writes only to standard error, except for the help.
: "${root:?}"

# Exit statuses beyond those of the program's own commands.
cannot_install=69
cannot_build=70

log() { printf '%s\n' "$*" >&2; }

# help_option "$@": with --help, prints the comment at the top of the running script and exits.
help_option() {
    [ "${1-}" = --help ] || return 0
    awk 'NR > 1 && !/^#/ { exit } NR > 1 && !/^# shellcheck/ { sub(/^# ?/, ""); print }' "$0"
    exit 0
}

processors() { getconf _NPROCESSORS_ONLN 2>/dev/null || echo 2; }

have() { command -v "$1" >/dev/null 2>&1; }

have_header() { [ -f "/usr/include/$1" ] || [ -f "/usr/local/include/$1" ]; }

# cmake 3.25 or newer.
have_cmake() {
    have cmake || return 1
    cmake_version=$(cmake --version | sed -n 's/^cmake version \([0-9]*\.[0-9]*\).*/\1/p')
    [ "${cmake_version%%.*}" -gt 3 ] || { [ "${cmake_version%%.*}" -eq 3 ] && [ "${cmake_version#*.}" -ge 25 ]; }
}

# What is missing for a build, as names of packages for the package manager $1, apt-get or pkg.
missing_for_build() {
    have c++ || have g++ || have clang++ || case $1 in apt-get) echo g++ ;; pkg) echo llvm ;; esac
    have_cmake || echo cmake
    have ninja || have make || case $1 in apt-get) echo ninja-build ;; pkg) echo ninja ;; esac
    have_header nlohmann/json.hpp || case $1 in apt-get) echo nlohmann-json3-dev ;; pkg) echo nlohmann-json ;; esac
    have_header gtest/gtest.h || case $1 in apt-get) echo libgtest-dev ;; pkg) echo googletest ;; esac
}

missing_for_lint() {
    have clang-format || case $1 in apt-get) echo clang-format ;; pkg) echo llvm ;; esac
    have clang-tidy || case $1 in apt-get) echo clang-tidy ;; pkg) echo llvm ;; esac
    have shellcheck || case $1 in apt-get) echo shellcheck ;; pkg) echo hs-ShellCheck ;; esac
}

missing_for_bench() {
    have valgrind || echo valgrind
}

missing_for_coverage() {
    have gcovr || case $1 in apt-get) echo gcovr ;; pkg) echo py311-gcovr ;; esac
}

# What .ci/run requires, and what single tests require that are skipped without it.
missing_for_checks() {
    missing_for_lint "$1"
    missing_for_bench "$1"
    missing_for_fuzz "$1"
    missing_for_coverage "$1"
    have python3 || echo python3
    [ "$1" != apt-get ] || /usr/bin/python3 -c 'import jsonschema' 2>/dev/null || echo python3-jsonschema
    [ "$1" != apt-get ] || have ansible-playbook || echo ansible-core
    [ "$1" != apt-get ] || have ansible-lint || echo ansible-lint
    [ "$1" != apt-get ] || have pycodestyle || echo pycodestyle
    [ "$1" != apt-get ] || have promtool || echo prometheus
    [ "$1" != apt-get ] || have prometheus-node-exporter || echo prometheus-node-exporter
    [ "$1" != apt-get ] || [ -x /usr/sbin/icinga2 ] || echo icinga2-bin
    [ "$1" != apt-get ] || [ -x /usr/sbin/nagios4 ] || echo nagios4-core
    [ "$1" != apt-get ] || /usr/bin/python3 -c 'import yaml' 2>/dev/null || echo python3-yaml
    [ "$1" != apt-get ] || /usr/bin/python3 -c 'import apt' 2>/dev/null || echo python3-apt
    [ "$1" != apt-get ] || have npm || echo npm
    have cram || have cram3 || case $1 in apt-get) echo python3-cram ;; pkg) echo py-cram ;; esac
    have mandoc || echo mandoc
    have rlwrap || echo rlwrap
    have zsh || echo zsh
    have tidy || case $1 in apt-get) echo tidy ;; pkg) echo tidy-html5 ;; esac
    have chromium || have chrome || echo chromium
    [ "$1" != apt-get ] || have chromedriver || echo chromium-driver
    have mksh || echo mksh
    have busybox || echo busybox
    have bsdtar || echo libarchive-tools
    [ "$1" != apt-get ] || have fakeroot || echo fakeroot
    [ "$1" != apt-get ] || have dpkg-shlibdeps || echo dpkg-dev
    [ "$1" != apt-get ] || have file || echo file
}

# clang++ and its fuzzing engine, which Debian packages separately.
missing_for_fuzz() {
    have clang++ || case $1 in apt-get) echo clang ;; pkg) echo llvm ;; esac
    have_fuzzing_engine || case $1 in apt-get) fuzzing_engine ;; pkg) echo llvm ;; esac
}

# The Debian package of the engine for the installed clang++, or for the one to be installed.
fuzzing_engine() {
    if have clang++; then
        echo "libclang-rt-$(clang++ -dumpversion | sed 's/\..*//')-dev"
    else
        echo libclang-rt-dev
    fi
}

have_fuzzing_engine() {
    have clang++ && [ -n "$(find "$(clang++ -print-resource-dir)/lib" -name '*clang_rt.fuzzer*' -print 2>/dev/null)" ]
}

# Runs a command as root: directly, or through sudo.
as_root() {
    if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# The command that install_packages runs.
install_command() {
    case $1 in
    apt-get) echo "apt-get update && apt-get install -y --no-install-recommends" ;;
    pkg) echo "pkg install -y" ;;
    esac
}

install_packages() {
    case $1 in
    apt-get)
        shift
        as_root apt-get update && as_root env DEBIAN_FRONTEND=noninteractive \
            apt-get install -y --no-install-recommends "$@"
        ;;
    pkg)
        shift
        as_root env ASSUME_ALWAYS_YES=yes pkg install -y "$@"
        ;;
    esac
}

# Names and installs what is missing for a purpose (build, checks, ...). Exits if that is not possible.
install_missing() {
    if have apt-get; then manager=apt-get; elif have pkg; then manager=pkg; else manager=none; fi
    missing=$("missing_for_$1" "$manager" | sort -u | tr '\n' ' ')
    [ -n "$missing" ] || return 0
    if [ "$manager" = none ]; then
        log "Missing for the $1, and neither apt-get nor pkg is available to install it (Debian package names):"
        log "  $("missing_for_$1" apt-get | tr '\n' ' ')"
        exit $cannot_install
    fi
    if [ "$(id -u)" -ne 0 ] && ! have sudo; then
        log "Missing for the $1: $missing"
        log "Installing packages requires root or sudo. Ask an administrator to run:"
        log "  $(install_command "$manager") $missing"
        exit $cannot_install
    fi
    log "Missing for the $1: $missing"
    log "Running: $(install_command "$manager") $missing"
    mkdir -p "$root/build"
    # One word per package.
    # shellcheck disable=SC2086
    if ! install_packages "$manager" $missing >"$root/build/install.log" 2>&1 </dev/null; then
        cat "$root/build/install.log" >&2
        log "Installation failed."
        exit $cannot_install
    fi
    hash -r
    still=$("missing_for_$1" "$manager" | sort -u | tr '\n' ' ')
    if [ -n "$still" ]; then
        log "Still missing, or too old in this system's packages (cmake must be 3.25 or newer): $still"
        exit $cannot_install
    fi
}

# with_lock PROGRAM: runs a program while no other process runs it that way, waiting if necessary. The program
# file itself is locked, so that no file is created or left behind. A killed process loses its lock. Every
# Linux has flock, every FreeBSD has lockf.
with_lock() {
    if have flock; then
        flock -n "$1" true || log "Waiting for another build..."
        flock "$1" "$1" || exit $?
    elif have lockf; then
        lockf -kns -t 0 "$1" true || log "Waiting for another build..."
        lockf -kn "$1" "$1" || exit $?
    else
        "$1" || exit $?
    fi
}

# build PRESET DIRECTORY [TARGET...]: configures the preset and builds all or these targets in
# $root/DIRECTORY. Output goes to build.log there and is shown only on failure.
build() {
    preset=$1 dir=$root/$2
    shift 2
    # Otherwise, a copied or moved tree would build the original one.
    if [ -f "$dir/CMakeCache.txt" ] && ! grep -qx "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$dir/CMakeCache.txt"; then
        rm -rf "$dir"
    fi
    if [ ! -f "$dir/CMakeCache.txt" ] && have ninja; then
        CMAKE_GENERATOR=Ninja
        export CMAKE_GENERATOR
    fi
    mkdir -p "$dir"
    if ! (cd "$root" && cmake --preset "$preset" &&
        cmake --build "$dir" --parallel "$(processors)" ${1+--target "$@"}) >"$dir/build.log" 2>&1 </dev/null; then
        cat "$dir/build.log" >&2
        log "The build failed. Its output, shown above, is in $dir/build.log."
        exit $cannot_build
    fi
}
