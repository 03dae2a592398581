#!/usr/bin/env bash
# readme_shows_ported_app.sh ROOT PROGRAM...
# The README's command for ported_app, with the program that was built here, prints what it says.
set -euo pipefail
source "$(dirname "$0")/readme_blocks.sh"

root=$1 readme=$1/README.md
shift

read -ra words < <(ReadmeBlock "$readme" sh /ported_app)
[[ ${words[0]} == */ported_app ]] || { echo "no command for ported_app: ${words[*]}"; exit 1; }

# A place that looks like the repository, for what the program writes: its output, and its log.
place=$(mktemp -d)
trap 'rm -r "$place"' EXIT
ln -s "$root/examples" "$place/examples"
mkdir "$place/build"
cp "$root/examples/ported_app/ported_app.ini" "$place/"
cd "$place"
export PORTED_APP_HOME=$place
diff -u --label README --label output \
    <(ReadmeOutput "$readme" /ported_app) <("$@" "${words[@]:1}")
