#!/usr/bin/env bash
# packages_are_reproducible.sh PACKAGES SOURCES
# The packages hold nothing that another build of the same sources would have otherwise: no time but
# the changelog's, no folder of this build; and no mode that depends on who built them.
set -euo pipefail

packages=$1 sources=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0

# TEXT LINES: complains when there are any lines.
ExpectNone() {
    [ -z "$2" ] || { printf '%s:\n%s\n' "$1" "$2"; failed=1; }
}

epoch=$(dpkg-parsechangelog --file "$sources/packaging/debian/changelog" --show-field Timestamp)
usual_modes='^(drwxr-xr-x|-rw-r--r--|lrwxrwxrwx|-rwxr-xr-x .* \./usr/bin/[a-z]+$)'
printf -v time '%(%Y-%m-%d %H:%M:%S)T' "$epoch"

for package in "$packages"/*.deb; do
    name=$(basename "$package")
    dpkg-deb --fsys-tarfile "$package" >"$work/files.tar"
    list=$(tar --list --verbose --full-time --file "$work/files.tar")
    ExpectNone "$name: not of $time" "$(grep -v " $time " <<<"$list" || true)"
    ExpectNone "$name: another mode" "$(grep -vE "$usual_modes" <<<"$list" || true)"

    mkdir "$work/files"
    tar --extract --file "$work/files.tar" --directory "$work/files"
    ExpectNone "$name: names the folder of the sources" \
        "$(grep --recursive --files-with-matches --fixed-strings "$sources" "$work/files" || true)"
    rm -rf "$work/files"
done
# An installed program does not have its search path any more, but its build identifier has.
ExpectNone "build.log: search paths" "$(grep -oE -- '-rpath,\S+' "$packages/build.log" || true)"
exit $failed
