#!/usr/bin/env bash
# exported_symbols.sh LIBRARY ARCHITECTURE SYMBOLS [--renew]
# Compares what the library exports with the kept list, which says since which version each is there.
set -euo pipefail

library=$1 architecture=$2 kept=$3
version=$(basename "$(readlink -f "$library")")
version=${version#*.so.}

# Strict: neither a new symbol nor a missing one passes.
Compare() {
    dpkg-gensymbols -plibqorutils1 -v"$version" -a"$architecture" -e"$library" -I"$kept" "$@"
}

if [ "${4:-}" = --renew ]; then
    renewed=$(mktemp)
    Compare -q -O"$renewed"
    cp "$renewed" "$kept"
    rm "$renewed"
elif ! Compare -c4 -O/dev/null 2>&1 | c++filt; then
    echo "The exported symbols have changed. If that is meant: $0 $library $architecture $kept --renew"
    exit 1
fi
