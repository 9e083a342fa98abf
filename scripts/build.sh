# SPDX-License-Identifier: MIT
# Sourced by the other scripts: configures and builds a preset, silently if everything is up to date.

# shellcheck disable=SC2034 # used by the scripts that source this file
test_jobs=${ORVALIS_TEST_JOBS:-$((2 * $(nproc)))} # most tests spend their time waiting

# quietly <what> <command>...: prints the command's output only if it fails.
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

# build_preset <preset> [target]...: prints only the targets that ninja builds.
build_preset() {
    local preset=$1
    shift
    ninja -C "build/$preset" -n "$@" 2>/dev/null | grep -q 'no work to do' && return 0
    echo "Building $preset"
    NINJA_STATUS='[%f/%t] ' ninja -C "build/$preset" --quiet "$@"
}
