#!/usr/bin/env bash
# new_user_walk.sh ROOT PACKAGES WORK_DIR
# Does what the README tells a new user, in its own words: the demo in a fresh copy of the sources,
# the packages installed by apt, a first program, its log, its strings in gdb. All of it happens in
# a mount namespace: what is installed is gone afterwards.
set -euo pipefail
source "$(dirname "$0")/../package/readme_blocks.sh"

root=$1 packages=$2 work=$3

# Overlays make /usr, /etc and /var ours to change.
Walk() {
    local folder
    mount -t tmpfs tmpfs "$work/overlays"
    for folder in usr etc var; do
        mkdir -p "$work/overlays/$folder"/{new,work}
        mount -t overlay overlay "/$folder" \
            -o "lowerdir=/$folder,upperdir=$work/overlays/$folder/new,workdir=$work/overlays/$folder/work"
    done
    cd "$work/sources"
    export TMPDIR=$work/logs APT_CONFIG=$work/apt.conf DEBIAN_FRONTEND=noninteractive
    # We are root, who may have no sudo; and a real one would clean the environment.
    # shellcheck disable=SC2317  # the README's commands call it
    sudo() { "$@"; }

    Step script/demo
    StepAsShown /ported_app
    Step "apt install"
    ReadmeBlock README.md cpp main >first.cpp
    StepAsShown ./first
    StepAsShown qorlog
    StepAsShown gdb
}

# WORD: runs the README's commands that have the word in them.
Step() {
    local commands
    commands=$(ReadmeBlock README.md sh "$1")
    [ -n "$commands" ] || { echo "README has no command with '$1'" >&2; return 1; }
    echo "\$ $commands" >&2
    eval "$commands"
}

# The same; what they print is the text behind them.
StepAsShown() {
    local wanted
    wanted=$(ReadmeOutput README.md "$1")
    [ -n "$wanted" ] || { echo "README shows nothing for '$1'" >&2; return 1; }
    diff -u --label README --label "what is printed" <(echo "$wanted") <(Step "$1")
}

if [ "${4:-}" = --in-namespace ]; then
    Walk
    exit
fi

as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
# What an earlier walk built belongs to root.
"${as_root[@]}" rm -rf "$work"
mkdir -p "$work"/{sources/build,logs,overlays}
(cd "$root" && git ls-files -z --cached --others --exclude-standard) |
    tar -C "$root" --null --files-from=- -c | tar -C "$work/sources" -x
# script/package has made them.
ln -s "$packages" "$work/sources/build/packages"
echo 'APT::Get::Assume-Yes "true";' >"$work/apt.conf"

"${as_root[@]}" unshare --mount "$0" "$root" "$packages" "$work" --in-namespace
