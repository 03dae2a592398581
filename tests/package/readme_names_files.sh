#!/usr/bin/env bash
# readme_names_files.sh ROOT
# The README and the porting guide name headers, tests and other files that exist.
set -euo pipefail
cd "$1"

missing=0

# FOLDER FILE PATTERN: each quoted name in the file that matches the pattern is one in the folder.
Check() {
    local names name
    names=$(grep -oE "\`$3\`" "$2" | tr -d '`' | sort -u)
    for name in $names; do
        [ -e "$1/$name" ] && continue
        echo "$2 names $1/$name, which does not exist"
        missing=1
    done
}

Check qorutils README.md '([a-z]+/)?[a-z0-9_]+\.h'
Check . README.md '(docs|examples|packaging|script|tools)/[a-z0-9_./]*'
Check tests docs/porting.md '[a-z_]+/[a-z0-9_]+(_test\.cpp|\.sh)'
Check qorutils docs/porting.md '[a-z]+/[a-z0-9_]+\.h'
Check . docs/porting.md 'examples/(ported_app/[a-z_.]*|[a-z]+\.cpp)'
exit $missing
