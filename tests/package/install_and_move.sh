#!/usr/bin/env bash
# install_and_move.sh BUILD_DIR PLACE
# Installs a build and moves the installed tree to PLACE: nothing in it may know where it was.
set -euo pipefail

build=$1 place=$2

rm -rf "$place" "$place.first"
cd "$(dirname "$place")"
cmake --install "$build" --prefix "$(basename "$place").first" >/dev/null
# Only gdb looks for its scripts by the full path of the library.
compgen -G "$place.first/share/gdb/auto-load$place.first/lib*/libqorutils.so.*-gdb.py" >/dev/null ||
    { echo "no scripts for gdb" >&2; exit 1; }
mv "$place.first" "$place"
