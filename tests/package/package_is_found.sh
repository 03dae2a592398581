#!/usr/bin/env bash
# package_is_found.sh BUILD_DIR CONSUMER_DIR WORK_DIR [CMAKE_ARGUMENT...]
# Installs the library into a new place, moves it, and builds and runs a stranger's project there.
set -euo pipefail

build=$1 consumer=$2 work=$3
shift 3

rm -rf "$work"
mkdir -p "$work"
cmake --install "$build" --prefix "$work/staged" >/dev/null
mv "$work/staged" "$work/installed"

cmake -S "$consumer" -B "$work/build" -G Ninja -Dqorutils_ROOT="$work/installed" "$@"
cmake --build "$work/build"
ctest --test-dir "$work/build" --output-on-failure --no-tests=error
