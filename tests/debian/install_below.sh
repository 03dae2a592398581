#!/usr/bin/env bash
# install_below.sh PACKAGES ROOT STATUS
# Installs the packages into an empty root of their own, with dpkg, which refuses what is not in
# order. STATUS tells it what the system has that they depend on; its files are not in this root.
set -euo pipefail

packages=$1 root=$2 status=$3
# dpkg asks for ldconfig, which is not in the path of who is not root.
PATH=$PATH:/usr/sbin:/sbin

rm -rf "$root"
mkdir -p "$root/var/lib/dpkg/"{info,updates}
cp "$status" "$root/var/lib/dpkg/status"
dpkg --root="$root" --force-not-root --force-architecture --log=/dev/null --install "$packages"/*.deb

for package in libqorutils1 libqorutils1-dbgsym libqorutils-dev qorutils-tools qorutils-tools-dbgsym; do
    state=$(dpkg-query --admindir="$root/var/lib/dpkg" -W -f '${db:Status-Abbrev}' "$package")
    [ "$state" = "ii " ] || { echo "$package is '$state'" >&2; exit 1; }
done
