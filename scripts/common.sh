# What the other scripts share; sourced, never run.
# shellcheck shell=bash

set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
export root

say() { printf '%s\n' "$*"; }

# One line that says what is wrong and what to do about it.
fail() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

# How many things to do at a time. Compilers of this project's sources want up to 1 GB each, so that a machine with many
# processors and little memory is held back by its memory.
jobs_at_once() {
    local processors memory
    processors=$(nproc)
    memory=$(awk '/^MemAvailable:/ { print int($2 / 1048576) }' /proc/meminfo)
    ((memory < 1)) && memory=1
    printf '%s\n' "$((processors < memory ? processors : memory))"
}

# Configures a preset into build/PRESET; cmake's options may follow. Quiet, unless it fails.
configure() {
    local log="build/$1/configure.log"
    mkdir -p "build/$1"
    cmake --preset "$@" >"$log" 2>&1 || {
        cat "$log" >&2
        fail "configuring \"$1\" failed (see above); a missing package is installed by scripts/setup"
    }
}
