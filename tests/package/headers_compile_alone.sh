#!/usr/bin/env bash
# headers_compile_alone.sh ROOT STANDARD COMPILER... -- HEADER...
# Compiles every header by itself, as a user includes it; lists all that fail.
set -euo pipefail

root=$1 standard=$2
shift 2
compiler=()
while [ "$1" != -- ]; do
    compiler+=("$1")
    shift
done
shift

[ $# -gt 0 ] || { echo "no headers given" >&2; exit 1; }
failed=0
for header in "$@"; do
    name=${header#"$root"/}
    if ! echo "#include <$name>" | "${compiler[@]}" -std="$standard" -I"$root" \
        -Wall -Wextra -Wpedantic -Wshadow -Werror -fsyntax-only -x c++ -; then
        echo "FAILED: $name as $standard"
        failed=$((failed + 1))
    fi
done
echo "$# headers, $failed failed"
[ "$failed" -eq 0 ]
