#!/usr/bin/env bash
# printers_show_values.sh BUILD_DIR WORK_DIR LIBDIR PROGRAM GDB... [-- EMULATOR...]
# Installs the library below WORK_DIR, where PROGRAM looks for it in LIBDIR, lets gdb find the
# printers by itself, and compares what it shows with values.expected.
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
build=$1 work=$2 libdir=$3 program=$4
shift 4
gdb=()
while [ $# -gt 0 ] && [ "$1" != -- ]; do
    gdb+=("$1")
    shift
done
emulator=("${@:2}")
command -v "${gdb[0]}" >/dev/null || { echo "no ${gdb[0]}" >&2; exit 1; }

rm -rf "$work"
mkdir -p "$work"
work=$(realpath "$work")
cmake --install "$build" --prefix "$work/installed" >/dev/null

scripts=$work/installed/share/gdb/auto-load
gdb+=(--batch -nx
    -iex "set debuginfod enabled off"
    -iex "set auto-load scripts-directory $scripts"
    -iex "set auto-load safe-path $scripts"
    -iex "set solib-search-path $work/installed/$libdir"
    -iex "set disable-randomization off"
    -iex "set startup-with-shell off"
    -iex "set confirm off"
    -ex "break Stop")

StartEmulator() {
    folder=$(mktemp -d)  # a socket's path must be short
    timeout 120 "${emulator[@]}" -g "$folder/gdb" "$program" >"$work/emulator.log" 2>&1 &
    trap 'kill $! 2>/dev/null || true; rm -r "$folder"' EXIT
    local tries=0
    until [ -S "$folder/gdb" ]; do
        tries=$((tries + 1))
        [ $tries -le 300 ] || { echo "the emulator does not listen" >&2; exit 1; }
        sleep 0.1
    done
    gdb+=(-ex "target remote $folder/gdb" -ex continue)
}

if [ ${#emulator[@]} -gt 0 ]; then
    StartEmulator
else
    gdb+=(-ex run)
fi

shown=$work/values.shown
# What is traced begins with '+'. Where unreadable memory lies is the machine's affair.
LC_ALL=C.UTF-8 timeout 120 "${gdb[@]}" -x "$here/values.gdb" "$program" 2>&1 |
    sed -nE 's/(memory at address) 0x[0-9a-f]+/\1 .../; /^\+/,/^\+kill/p' >"$shown" || true

if ! diff -u "$here/values.expected" "$shown"; then
    echo "gdb shows other values. If that is meant: cp $shown $here/values.expected" >&2
    exit 1
fi
