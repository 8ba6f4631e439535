# Shared by the packaging tests: a folder of the test's own in $stage, and how they complain. Expects
# set -eu.
# shellcheck shell=sh
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

# Complains unless the two files are the same; $1 says of what.
same() {
    diff -u "$2" "$3" >&2 || fail "$1: - expected, + found"
}

# Puts the products of a build into the place of those of the one configured in $stage/build.
products_of() {
    mkdir -p "$stage/build/bin" "$stage/build/packaging"
    cp "$1/bin/q5sim" "$stage/build/bin/"
    cp -R "$1/lib" "$stage/build/"
    cp -R "$1/packaging/products" "$stage/build/packaging/"
}
