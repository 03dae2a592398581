#!/usr/bin/env bash
# exported_symbols.sh LIBRARY KEPT_LIST [--renew]
# Compares what the library exports with the list that is kept beside this script.
set -euo pipefail

library=$1 kept=$2

Exported() {
    nm --dynamic --defined-only --demangle "$library" | sed -E 's/^[0-9a-f]+ . //' | LC_ALL=C sort -u
}

if [ "${3:-}" = --renew ]; then
    Exported >"$kept"
elif ! diff -u --label kept --label exported "$kept" <(Exported); then
    echo "The exported symbols have changed. If that is meant: $0 $library $kept --renew"
    exit 1
fi
