#!/usr/bin/env bash
# string_through_dots.sh ROOT COMPILER...
# Compilers refuse a string object among the arguments of a format, and take its c_str(): clang
# always, gcc when it is told to.
set -euo pipefail

root=$1
shift

Compile() {
    "$@" -std=c++14 -I"$root" -Wall -Werror=conditionally-supported -Wno-unknown-warning-option \
        -fsyntax-only -x c++ - 2>&1 <<EOF
#include <qorutils/logging/trace.h>
#include <qorutils/text/qor_string.h>
#include <qorutils/text/safe_format.h>
using CString = qor_text::CQorStringT<wchar_t>;
using CStringA = qor_text::CQorStringT<char>;
void Use(CString& wide, CStringA& narrow) { $statement }
EOF
}

# In each, ARGUMENT stands behind the string: ".c_str()", or nothing.
statements=(
    'narrow.Format("%s", narrowARGUMENT);'
    'wide.Format(L"%ls", wideARGUMENT);'
    'wide = qor_text::qor_printf(L"%ls", wideARGUMENT);'
    'qor_logging::QOR_TRACE_ALWAYS("%s", narrowARGUMENT);'
    'qor_logging::QOR_TRACE_ALWAYS(L"%ls", wideARGUMENT);'
    'qor_logging::QOR_TRACE_ALWAYS(wide, wideARGUMENT);'
    'qor_logging::LOGMESSAGE(0, L"%ls", wideARGUMENT);'
)
failed=0
for pattern in "${statements[@]}"; do
    statement=${pattern/ARGUMENT/.c_str()}
    if ! Compile "$@"; then
        echo "not accepted: $statement"
        failed=1
    fi
    statement=${pattern/ARGUMENT/}
    if output=$(Compile "$@"); then
        echo "not refused: $statement"
        failed=1
    elif ! grep -qE '\[-W(error=conditionally-supported|non-pod-varargs)\]' <<<"$output"; then
        echo "refused for another reason: $statement"
        echo "$output"
        failed=1
    fi
done
exit $failed
