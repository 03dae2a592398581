#!/usr/bin/env bash
# readme_quotes_program.sh README SOURCE PROGRAM...
# The README's first C++ block is the source, and its first text block is what the program prints.
set -euo pipefail

readme=$1 source=$2
shift 2

FirstBlock() {
    awk -v fence='```' -v language="$1" '
        inside && $0 == fence { exit }
        inside
        $0 == fence language { inside = 1 }' "$readme"
}

diff -u --label README --label "$source" <(FirstBlock cpp) "$source"
diff -u --label README --label output <(FirstBlock text) <("$@")
