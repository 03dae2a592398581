#!/usr/bin/env bash
# build_is_hardened.sh BUILD_LOG ARCHITECTURE
# Every command of the build has Debian's flags for hardened binaries.
set -euo pipefail

log=$1 architecture=$2

# blhc looks only at what follows this line of Debian's own build program.
with_start=$(mktemp)
trap 'rm "$with_start"' EXIT
{ echo "dpkg-buildpackage: info: host architecture $architecture"; cat "$log"; } >"$with_start"
blhc --all "$with_start"
