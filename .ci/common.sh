# Shared by ./run, ./test, ./bench and .ci/run: what a build needs, how it is installed, and building without
# noise. Expects $root, the folder of the sources, and set -eu. Writes to standard error only.
: "${root:?}"

# Exit statuses beyond those of the program's own commands.
cannot_install=69
cannot_build=70

say() { printf '%s\n' "$*" >&2; }

processors() { getconf _NPROCESSORS_ONLN 2>/dev/null || echo 2; }

has() { command -v "$1" >/dev/null 2>&1; }

has_header() { [ -f "/usr/include/$1" ] || [ -f "/usr/local/include/$1" ]; }

# cmake 3.25 or newer.
has_cmake() {
    has cmake || return 1
    cmake_version=$(cmake --version | sed -n 's/^cmake version \([0-9]*\.[0-9]*\).*/\1/p')
    [ "${cmake_version%%.*}" -gt 3 ] || { [ "${cmake_version%%.*}" -eq 3 ] && [ "${cmake_version#*.}" -ge 25 ]; }
}

# What is missing of what a build needs, as packages of the machine's package manager: $1 names them
# the way of apt-get or pkg.
missing_for_build() {
    has c++ || has g++ || has clang++ || case $1 in apt-get) echo g++ ;; pkg) echo llvm ;; esac
    has_cmake || echo cmake
    has ninja || has make || case $1 in apt-get) echo ninja-build ;; pkg) echo ninja ;; esac
    has_header nlohmann/json.hpp || case $1 in apt-get) echo nlohmann-json3-dev ;; pkg) echo nlohmann-json ;; esac
    has_header gtest/gtest.h || case $1 in apt-get) echo libgtest-dev ;; pkg) echo googletest ;; esac
}

missing_for_lint() {
    has clang-format || case $1 in apt-get) echo clang-format ;; pkg) echo llvm ;; esac
    has clang-tidy || case $1 in apt-get) echo clang-tidy ;; pkg) echo llvm ;; esac
}

missing_for_bench() {
    has valgrind || echo valgrind
}

missing_for_coverage() {
    has gcovr || case $1 in apt-get) echo gcovr ;; pkg) echo py311-gcovr ;; esac
}

# What single tests need that are skipped elsewhere, and what the checks beyond the tests do.
missing_for_checks() {
    missing_for_lint "$1"
    missing_for_bench "$1"
    missing_for_fuzz "$1"
    missing_for_coverage "$1"
    has python3 || echo python3
    has mandoc || echo mandoc
    has rlwrap || echo rlwrap
    has zsh || echo zsh
    [ "$1" != apt-get ] || has fakeroot || echo fakeroot
    [ "$1" != apt-get ] || has dpkg-shlibdeps || echo dpkg-dev
    [ "$1" != apt-get ] || has file || echo file
}

# The compiler's own engine, which Debian packs beside it.
missing_for_fuzz() {
    has clang++ || case $1 in apt-get) echo clang ;; pkg) echo llvm ;; esac
    has_fuzzing_engine || case $1 in apt-get) fuzzing_engine ;; pkg) echo llvm ;; esac
}

# As a package of Debian: of the clang++ that is here, or of the one that comes with it.
fuzzing_engine() {
    if has clang++; then
        echo "libclang-rt-$(clang++ -dumpversion | sed 's/\..*//')-dev"
    else
        echo libclang-rt-dev
    fi
}

has_fuzzing_engine() {
    has clang++ && [ -n "$(find "$(clang++ -print-resource-dir)/lib" -name '*clang_rt.fuzzer*' -print 2>/dev/null)" ]
}

# Runs a command as root: directly, or through sudo.
as_root() {
    if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
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

# Installs what is missing for a purpose (build, checks, ...); says what and why. Ends the script when
# that is not possible.
ensure() {
    if has apt-get; then manager=apt-get; elif has pkg; then manager=pkg; else manager=none; fi
    missing=$("missing_for_$1" "$manager" | sort -u | tr '\n' ' ')
    [ -n "$missing" ] || return 0
    if [ "$manager" = none ]; then
        say "Missing, and neither apt-get nor pkg is here to install it (names as in Debian):"
        say "  $("missing_for_$1" apt-get | tr '\n' ' ')"
        exit $cannot_install
    fi
    if [ "$(id -u)" -ne 0 ] && ! has sudo; then
        say "Missing for the $1: $missing"
        say "Installing it takes root or sudo, and there is neither. Let an administrator run:"
        say "  $manager install $missing"
        exit $cannot_install
    fi
    say "Installing what is missing here for the $1, with $manager: $missing"
    mkdir -p "$root/build"
    # One word for each package.
    # shellcheck disable=SC2086
    if ! install_packages "$manager" $missing >"$root/build/install.log" 2>&1 </dev/null; then
        cat "$root/build/install.log" >&2
        say "Installing failed."
        exit $cannot_install
    fi
    hash -r
    still=$("missing_for_$1" "$manager" | sort -u | tr '\n' ' ')
    if [ -n "$still" ]; then
        say "Still missing, or too old as this system offers it (cmake must be 3.25 or newer): $still"
        exit $cannot_install
    fi
}

# Configures a preset and builds it, or the targets given, into $root/$2; noise goes to build.log
# there and is shown when it fails.
build() {
    preset=$1 folder=$root/$2
    shift 2
    # A tree that was moved or copied with its build folder would go on building the old one.
    if [ -f "$folder/CMakeCache.txt" ] && ! grep -qx "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$folder/CMakeCache.txt"; then
        rm -rf "$folder"
    fi
    if [ ! -f "$folder/CMakeCache.txt" ] && has ninja; then
        CMAKE_GENERATOR=Ninja
        export CMAKE_GENERATOR
    fi
    mkdir -p "$folder"
    if ! (cd "$root" && cmake --preset "$preset" &&
        cmake --build "$folder" --parallel "$(processors)" ${1+--target "$@"}) >"$folder/build.log" 2>&1 </dev/null; then
        cat "$folder/build.log" >&2
        say "The build failed; the above is in $folder/build.log."
        exit $cannot_build
    fi
}
