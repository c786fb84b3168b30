# shellcheck shell=bash
# Sourced by the scripts beside this folder; sets the ground they all stand on.

set -euo pipefail
export LC_ALL=C

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
readonly root

say() { printf '== %s\n' "$*" >&2; }

die() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

jobs() { nproc 2>/dev/null || echo 2; }

# Compiles through ccache where it is installed and the user has not chosen otherwise.
use_ccache() {
    command -v ccache >/dev/null || return 0
    export CMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER-ccache}
    # ccache finds its cache by HOME; a service account may have none.
    if [[ -z ${HOME:-} && -z ${CCACHE_DIR:-} ]]; then export CCACHE_DIR=$root/build/ccache; fi
}
