#!/usr/bin/env bash
# format_is_checked.sh ROOT COMPILER...
# The compiler accepts right arguments of the narrow Format and FormatV, and refuses wrong ones.
set -euo pipefail

root=$1
compiler=("${@:2}")

Compiles() {
    "${compiler[@]}" -std=c++14 -I"$root" -Wall -Werror -fsyntax-only -x c++ - <<EOF
#include <cstdarg>
#include <qorutils/text/qor_string.h>
void Use(qor_text::CQorStringT<char>& s) { $1 }
void Forward(qor_text::CQorStringT<char>& s, va_list args) { s.FormatV("%d", args); }
EOF
}

Compiles 's.Format("%d %s %5.2f", 1, "text", 2.0);'
for wrong in 's.Format("%d", "text");' 's.Format("%s", 1);' 's.Format("%d %d", 1);'; do
    if Compiles "$wrong" 2>/dev/null; then
        echo "not refused: $wrong" >&2
        exit 1
    fi
done
