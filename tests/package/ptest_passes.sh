#!/usr/bin/env bash
# ptest_passes.sh BUILD_DIR ROOT WORK_DIR
# The tests pass when they are installed and run as on a device, with an installed library.
set -euo pipefail

build=$1 root=$2 work=$3

rm -rf "$work"
cmake --install "$build" --component runtime --prefix "$work/usr" >/dev/null
cmake --install "$build" --component tests --prefix "$work/ptest" >/dev/null
cp "$root"/packaging/yocto/meta-qorutils/recipes-support/qorutils/files/run-ptest "$work/ptest/"

library=$(find "$work/usr" -name 'libqorutils.so.*' -type l)
LD_LIBRARY_PATH=$(dirname "$library") "$work/ptest/run-ptest" >"$work/ptest.log" || {
    grep -v '^PASS' "$work/ptest.log"
    exit 1
}
passed=$(grep -c '^PASS' "$work/ptest.log")
programs=$(find "$work/ptest" -name '*_tests' | wc -l)
# Each program in four environments, and the check of the time zone.
[ "$passed" -eq $((4 * programs + 1)) ] || { echo "$programs programs, $passed passes"; exit 1; }
