#!/usr/bin/env bash
# consumer_builds.sh CONSUMER WORK_DIR CMAKE_ARGUMENT...
# Builds and runs a stranger's project from nothing.
set -euo pipefail

consumer=$1 work=$2
shift 2

rm -rf "$work"
cmake -S "$consumer" -B "$work" -G Ninja -DCMAKE_BUILD_TYPE=Release "$@"
cmake --build "$work"
ctest --test-dir "$work" --output-on-failure --no-tests=error
