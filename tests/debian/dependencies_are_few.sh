#!/usr/bin/env bash
# dependencies_are_few.sh PACKAGES
# The packages depend on Boost's few libraries, the C++ runtime and each other, and on nothing else.
set -euo pipefail

packages=$1

# The names that a package depends on, without versions.
Dependencies() {
    dpkg-deb --field "$packages/$1"_*.deb Depends | sed 's/ *([^)]*)//g; s/, */\n/g' | sort
}

Expect() {
    local package=$1
    shift
    diff -u --label "wanted for $package" --label "$package depends on" \
        <(printf '%s\n' "$@" | sort) <(Dependencies "$package")
}

runtime=(libc6 libgcc-s1 libstdc++6)
Expect libqorutils1 libboost-filesystem1.74.0 libboost-thread1.74.0 "${runtime[@]}"
Expect libqorutils-dev libqorutils1
Expect libqorutils1-dbgsym libqorutils1
Expect qorutils-tools libqorutils1 libboost-program-options1.74.0 "${runtime[@]}"
Expect qorutils-tools-dbgsym qorutils-tools
