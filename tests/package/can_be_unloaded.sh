#!/usr/bin/env bash
# can_be_unloaded.sh LIBRARY
# A symbol that is one for the whole process would keep the library from being unloaded.
set -euo pipefail

symbols=$(nm --dynamic --defined-only "$1")
[ -n "$symbols" ] || { echo "$1 exports nothing" >&2; exit 1; }
if grep ' u ' <<<"$symbols"; then exit 1; fi
