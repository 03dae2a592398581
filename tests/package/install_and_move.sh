#!/usr/bin/env bash
# install_and_move.sh BUILD_DIR PLACE
# Installs a build and moves the installed tree to PLACE: nothing in it may know where it was.
set -euo pipefail

build=$1 place=$2

rm -rf "$place" "$place.first"
cmake --install "$build" --prefix "$place.first" >/dev/null
mv "$place.first" "$place"
