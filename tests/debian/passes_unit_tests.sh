#!/usr/bin/env bash
# passes_unit_tests.sh LIBDIR TEST_PROGRAM [EMULATOR...]
# The packaged library, built with other flags than the tests' own, passes the unit tests too.
set -euo pipefail

libdir=$1 program=$2
shift 2

if [ $# -eq 0 ]; then
    LD_LIBRARY_PATH=$libdir "$program" --gtest_brief=1
else
    # The emulator's last argument is the library path of the program that it runs.
    "${@:1:$#-1}" "${!#/LD_LIBRARY_PATH=/LD_LIBRARY_PATH=$libdir:}" "$program" --gtest_brief=1
fi
