# SPDX-License-Identifier: MIT
# Sourced by the scripts beside it: configures and builds a preset, quietly when there is nothing to do.

# shellcheck disable=SC2034 # for those who source this
test_jobs=${ORVALIS_TEST_JOBS:-$((2 * $(nproc)))} # most tests wait more than they compute

# quietly <what> <command>...: shows the command's output only if it fails.
quietly() {
    local what=$1 log
    shift
    log=$(mktemp)
    if ! "$@" >"$log" 2>&1; then
        cat "$log"
        rm -f "$log"
        echo "$what failed" >&2
        return 1
    fi
    rm -f "$log"
}

# configure_preset <preset> [cmake option]...
configure_preset() {
    local preset=$1
    shift
    quietly "Configuring $preset" cmake --preset "$preset" "$@"
}

# build_preset <preset> [target]...: ninja names what it builds, and what is up to date is not mentioned.
build_preset() {
    local preset=$1
    shift
    ninja -C "build/$preset" -n "$@" 2>/dev/null | grep -q 'no work to do' && return 0
    echo "Building $preset"
    NINJA_STATUS='[%f/%t] ' ninja -C "build/$preset" --quiet "$@"
}
