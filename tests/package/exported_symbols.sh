#!/usr/bin/env bash
# exported_symbols.sh LIBRARY ARCHITECTURE SYMBOLS [--renew]
# Compares what the library exports with the kept list, which says since which version each symbol
# is there. --renew adds what is new, as of the library's version.
set -euo pipefail

library=$1 architecture=$2 kept=$3
version=$(basename "$(readlink -f "$library")")
version=${version#*.so.}

# STRICTNESS: 1 complains about symbols that are gone, 4 also about new ones.
Compare() {
    # A symbol is missed only in a version after the one that it came with.
    Generate -v"$version+" -c"$1" -O/dev/null 2>&1 | c++filt
}

Generate() {
    dpkg-gensymbols -p"libqorutils${version%%.*}" -a"$architecture" -e"$library" -I"$kept" "$@"
}

if [ "${4:-}" != --renew ]; then
    Compare 4 && exit
    echo "The exported symbols have changed. If that is meant: $0 $library $architecture $kept --renew"
    exit 1
fi

if ! Compare 1; then
    echo "Programs that use what is gone would not start: that is a new major version."
    exit 1
fi
renewed=$(mktemp)
Generate -q -v"$version" -O"$renewed"
cp "$renewed" "$kept"
rm "$renewed"
