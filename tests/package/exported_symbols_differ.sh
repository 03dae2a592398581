#!/usr/bin/env bash
# exported_symbols_differ.sh LIBRARY ARCHITECTURE SYMBOLS
# exported_symbols.sh notices a symbol that is new and one that is gone; only the first can be
# renewed.
set -euo pipefail

check=$(dirname "$0")/exported_symbols.sh
library=$1 architecture=$2 symbols=$3
version=$(basename "$(readlink -f "$library")")
version=${version#*.so.}
work=$(mktemp -d)
trap 'rm -r "$work"' EXIT

Fail() {
    echo "$*" >&2
    exit 1
}

# ARGUMENT...: what exported_symbols.sh says of the changed list; its status.
Check() { "$check" "$library" "$architecture" "$work/symbols" "$@" >"$work/said" 2>&1; }

grep -v '^ _Z10GetRootDirv@' "$symbols" >"$work/symbols"
if Check; then Fail "a new symbol is not noticed"; fi
grep -q '^+ GetRootDir()' "$work/said" || Fail "a new symbol is not named"
Check --renew
diff -u <(sed "s/^\( _Z10GetRootDirv@Base\) .*/\1 $version/" "$symbols") "$work/symbols"

sed 's/^ _Z10GetRootDirv@.*/&\n _Z10GetRootDisv@Base 1.0.0/' "$symbols" >"$work/symbols"
cp "$work/symbols" "$work/longer"
if Check; then Fail "a symbol that is gone is not noticed"; fi
grep -q '^- GetRootDis()' "$work/said" || Fail "a symbol that is gone is not named"
if Check --renew; then Fail "the list is renewed without a symbol"; fi
diff -u "$work/longer" "$work/symbols"
