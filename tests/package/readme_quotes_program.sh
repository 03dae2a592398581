#!/usr/bin/env bash
# readme_quotes_program.sh README SOURCE PROGRAM...
# The README's C++ program is the source, and what it says that the program prints is what it prints.
set -euo pipefail
source "$(dirname "$0")/readme_blocks.sh"

readme=$1 source=$2
shift 2

# The program's log goes there.
TMPDIR=$(mktemp -d)
export TMPDIR
trap 'rm -r "$TMPDIR"' EXIT

diff -u --label README --label "$source" <(ReadmeBlock "$readme" cpp main) "$source"
diff -u --label README --label output <(ReadmeOutput "$readme" ./first) <("$@")
