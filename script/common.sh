# shellcheck shell=bash
# Sourced by the scripts beside it: strict mode, the repository's root, one way to build.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# PRESET [ARGUMENT...]: the arguments go to the build.
BuildPreset() {
    echo "== build $1"
    cmake --preset "$1"
    cmake --build --preset "$@"
}
