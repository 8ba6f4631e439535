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
    cp "$1/bin/q5sim" "$stage/build/bin/"
    cp -R "$1/lib" "$stage/build/"
    cp -R "$1/packaging/products" "$stage/build/packaging/"
}
