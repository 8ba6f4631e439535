# shellcheck shell=sh
# Shared by ./run and .ci/build_products: whether the products of ./run are up to date. Expects $root.
: "${root:?}"
stamp=$root/build/run.stamp
sources="CMakeLists.txt CMakePresets.json adapter cli commands completions/cli-shell.in config simulator util"
products="build/bin/cli-rehearse build/bin/cli-shell build/lib/libzvq5plugin.so build/lib/libzverrlog.so"

# Names and checksums of all sources and products. Modification times are not reliable after a checkout or
# another build. Missing files are left out. The names are not sorted: that would cost more than the rare
# build caused by a different order.
checksums() (
    cd "$root" || exit
    find "$@" -type f -exec cksum {} + 2>/dev/null || :
)

# One word per name.
# shellcheck disable=SC2086
up_to_date() {
    [ -f "$stamp" ] && [ "$root
$(checksums $sources $products)" = "$(cat "$stamp")" ]
}
