#!/usr/bin/env bash
# shlibs_follow_symbols.sh CONTROL
# Tools that do not know the lists of symbols make a program depend on what CONTROL/shlibs says: a
# version that has every symbol of the lists.
set -euo pipefail
cd "$1"

newest=$(sed -n 's/^ .*@Base //p' ./*/symbols | sort --version-sort | tail -n 1)
[ -n "$newest" ] || { echo "no symbols in $1" >&2; exit 1; }
package=$(basename "$1")
diff -u --label wanted --label shlibs \
    <(echo "libqorutils ${package#libqorutils} $package (>= $newest)") shlibs
