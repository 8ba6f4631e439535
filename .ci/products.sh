# shellcheck shell=sh
# Shared by ./run and .ci/build_products: whether the products of ./run are up to date. Expects $root.
: "${root:?}"
stamp=$root/build/run.stamp
# Patterns, because find would take longer than the checksums.
sources="CMakeLists.txt CMakePresets.json adapter/* cli/* commands/* completions/cli-shell.in config/* simulator/*
    simulator/*/* util/*"
products="build/bin/cli-rehearse build/bin/cli-shell build/lib/libzvq5plugin.so build/lib/libzverrlog.so"

# checksums PATTERNS: replaces the subshell it is called in; prints the path of the tree, because the programs
# contain it, and names and checksums of the files. Modification times are not reliable after a checkout or
# another build. Directories and missing files are left out.
checksums() {
    CDPATH='' cd -- "$root" && pwd -P || exit
    # shellcheck disable=SC2086
    exec cksum $1 2>/dev/null
}

up_to_date() {
    checksums "$sources $products" | cmp -s - "$stamp"
}
