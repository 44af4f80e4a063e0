# What the scripts `run`, `test` and `bench` share. Sourced, from any directory; sets `root`.
# shellcheck shell=bash

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

say() { printf '%s\n' "$@" >&2; }

die() {
    say "$@"
    exit 1
}

ensure_packages() { "$root/Packaging/scripts/ensure-packages.sh" "$@"; }

# Without its models the worker recognises less well; that is no reason to stop.
fetch_models() {
    "$root/Packaging/scripts/fetch-models.sh" || say "" "Going on without the models that could not be fetched." ""
}

jobs_at_once() { echo "${CMAKE_BUILD_PARALLEL_LEVEL:-$(nproc)}"; }

# configure_preset PRESET: quiet unless it fails. A cache that was made in another directory is made afresh: a checkout
# may have been moved or copied together with its build directory.
configure_preset() {
    local build="$root/build/$1" log fresh=()
    mkdir -p "$build"
    log="$build/configure.log"
    if [ -f "$build/CMakeCache.txt" ] && ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$build/CMakeCache.txt"; then
        fresh=(--fresh)
    fi
    if ! (cd "$root" && cmake "${fresh[@]}" --preset "$1") >"$log" 2>&1; then
        cat "$log" >&2
        die "" "Configuring failed; what CMake said stands above and in $log."
    fi
}

# build_preset PRESET [TARGET...]: on a terminal the one-line progress of ninja, else nothing unless it fails.
build_preset() {
    local preset=$1 log="$root/build/$1/build.log" arguments=(--build --preset "$1" -j "$(jobs_at_once)")
    shift
    [ $# -eq 0 ] || arguments+=(--target "$@")
    if [ -t 2 ]; then
        (cd "$root" && cmake "${arguments[@]}") >&2 || die "Building failed (preset $preset)."
    elif ! (cd "$root" && cmake "${arguments[@]}") >"$log" 2>&1; then
        grep -vE '^\[[0-9]+/[0-9]+\] ' "$log" >&2 || tail -n 40 "$log" >&2
        die "" "Building failed (preset $preset); the whole log is $log."
    fi
}
