# shellcheck shell=sh
# Shared by the packaging tests: a temporary directory in $stage, and reporting. Expects set -eu.
if [ "${1-}" = --help ]; then
    awk 'NR > 1 && !/^#/ { exit } NR > 1 { sub(/^# ?/, ""); print }' "$0"
    exit 0
fi
stage=$(mktemp -d "${TMPDIR:-/tmp}/packaging.XXXXXX")
trap 'rm -rf "$stage"' EXIT
LC_ALL=C
export LC_ALL

fail() {
    printf '%s\n' "$*" >&2
    exit 1
}

skip() {
    printf '%s\n' "$*" >&2
    exit 77
}

# same WHAT EXPECTED FOUND: fails unless the two files are identical.
same() {
    diff -u "$2" "$3" >&2 || fail "$1: - expected, + found"
}

# Copies the products of a build to the build directory configured in $stage/build.
products_of() {
    mkdir -p "$stage/build/bin" "$stage/build/packaging"
    cp "$1/bin/q5sim" "$1/bin/cli-try-report" "$1/bin/cli-restore-rehearse" "$stage/build/bin/"
    cp -R "$1/lib" "$stage/build/"
    cp -R "$1/packaging/products" "$stage/build/packaging/"
}

# stage_as_port SOURCE-DIRECTORY BUILD-DIRECTORY: an installation in FreeBSD's directories in $stage/root,
# configured as by the port; the products are copied from the existing build.
stage_as_port() {
    arguments=$(sed -n 's/.*\(-DCMAKE_INSTALL_[A-Z]*\):PATH=\([^ ]*\).*/\1=\2/p' "$2/packaging/freebsd/Makefile" |
        sed "s/\${PORTNAME}/cli/")
    [ "$(printf '%s\n' "$arguments" | wc -l)" -eq 2 ] || fail "unexpected CMAKE_ARGS in the port: $arguments"
    # One word per argument.
    # shellcheck disable=SC2086
    "$CMAKE" -S "$1" -B "$stage/build" -DCMAKE_INSTALL_PREFIX=/usr/local -DBUILD_TESTING=OFF -DBUILD_BEFORE_INSTALL=OFF \
        -DSCHEDULED_JOBS=periodic $arguments >"$stage/log" 2>&1 || fail "$(cat "$stage/log")"
    products_of "$2"
    DESTDIR=$stage/root "$CMAKE" --install "$stage/build" >"$stage/log" 2>&1 || fail "$(cat "$stage/log")"
    # The ports system compresses the manual pages.
    find "$stage/root/usr/local/share/man" -type f -exec gzip -9n {} +
}

# protected DIRECTORY: fails if a program or library below it lacks its protections.
protected() {
    [ -z "${UNPROTECTED-}" ] || return 0
    checker=$(dirname -- "$0")/../protections/check_protections
    without=$(printf '%s\n' "${UNKNOWN_PROTECTIONS-}" | sed 's/-[^ ]*/--without &/g')
    find "$1" -type f -exec sh -c 'head -c 4 "$1" | grep -q ELF' sh {} \; -print >"$stage/programs"
    [ "$(wc -l <"$stage/programs")" -ge 3 ] || fail "no programs to check in $1"
    while read -r program; do
        case ${program##*/} in
        cli | cli-rehearse) kind=--lazy ;;
        libzverrlog.so) kind=--stub ;;
        *) kind="" ;;
        esac
        # One word per option.
        # shellcheck disable=SC2086
        "$checker" $kind $without "$program" || fail "$program lacks protections"
    done <"$stage/programs"
}
