#!/bin/bash
# SPDX-License-Identifier: MIT
# Runs a command in a separate network with GigE Vision test cameras, so that no packet leaves the
# machine:
#
#   run_gige.sh [--cameras N] [--lose N] [--cable] [--] command [argument...]
#
# N cameras (0 to 2, default 1): serial numbers GV01 at 127.0.0.1 and GV02 at 127.0.0.2; --lose: they
# lose N of a thousand packets; --cable: a second network at the other end of a cable, "cable0" here,
# "cable1" there; the process ORVALIS_CABLE_PID runs in it. Sets ORVALIS_BACKENDS=genicam,
# ORVALIS_GIGE_NETWORK=1 and, for each camera, ORVALIS_GIGE_PID_1, _2. Exits with the command's
# status, or with 77 and a reason if the machine does not permit this. Ends all processes that it
# started.
set -u

skip() {
    echo "skipped: $*" >&2
    exit 77
}

outside() {
    local program
    for program in unshare ip arv-fake-gv-camera-0.8; do
        PATH="$PATH:/usr/sbin:/sbin" command -v "$program" >/dev/null || skip "$program is not installed"
    done
    local user=()
    [ "$(id -u)" -eq 0 ] || user=(--map-root-user)
    # A process namespace too, if possible: all processes in it end with it.
    local all=(--net --mount --pid --fork --kill-child --mount-proc)
    unshare "${user[@]}" "${all[@]}" true 2>/dev/null || all=(--net)
    unshare "${user[@]}" "${all[@]}" true 2>/dev/null ||
        skip "this machine does not permit network namespaces (unshare --net)"
    ORVALIS_GIGE_NETWORK=1 exec unshare "${user[@]}" "${all[@]}" "$BASH" "$0" --inside "$@"
}

start_camera() { # number, lost packets per thousand
    arv-fake-gv-camera-0.8 -i "127.0.0.$1" -s "GV0$1" -r "$2" >/dev/null 2>&1 &
    local pid=$! tries
    started+=("$pid")
    export "ORVALIS_GIGE_PID_$1=$pid"
    for ((tries = 0; tries < 200; tries++)); do
        grep -q " 0${1}00007F:0F74 " /proc/net/udp && return
        kill -0 "$pid" 2>/dev/null || skip "the test camera does not start"
        sleep 0.05
    done
    skip "the test camera does not listen"
}

lay_cable() {
    unshare --net sleep infinity &
    export ORVALIS_CABLE_PID=$!
    started+=("$ORVALIS_CABLE_PID")
    local tries here
    here=$(readlink /proc/self/ns/net)
    for ((tries = 0; tries < 200; tries++)); do
        [ "$(readlink "/proc/$ORVALIS_CABLE_PID/ns/net")" != "$here" ] && break
        kill -0 "$ORVALIS_CABLE_PID" 2>/dev/null || skip "no second network namespace"
        sleep 0.05
    done
    ip link add cable0 type veth peer name cable1 netns "$ORVALIS_CABLE_PID" ||
        skip "this machine does not permit pairs of network interfaces (veth)"
}

end_all() {
    local pid
    for pid in "${started[@]}"; do
        kill -9 "$pid" 2>/dev/null
    done
}

inside() {
    local cameras=1 lose=0 cable='' number
    while [ $# -gt 0 ]; do
        case "$1" in
        --cameras) cameras=$2 && shift 2 ;;
        --lose) lose=$2 && shift 2 ;;
        --cable) cable=1 && shift ;;
        --) shift && break ;;
        *) break ;;
        esac
    done
    PATH="$PATH:/usr/sbin:/sbin"
    ip link set lo up || skip "the loopback interface does not come up"
    ip addr add 127.0.0.2/8 dev lo || skip "no second loopback address"
    started=()
    trap end_all EXIT
    for ((number = 1; number <= cameras; number++)); do
        start_camera "$number" "$lose"
    done
    [ -z "$cable" ] || lay_cable
    export ORVALIS_BACKENDS=genicam
    "$@"
}

if [ "${1:-}" = --inside ]; then
    shift
    inside "$@"
else
    outside "$@"
fi
