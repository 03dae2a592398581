#!/usr/bin/env bash
# pkg_config_takes_sysroot.sh ROOT TRIPLET
# pkg-config puts ROOT in front of plain paths. A path that begins with the place of the .pc file
# has it already, and old versions would put it there twice.
set -euo pipefail

root=$1 libdir=$1/usr/lib/$2

flags=$(PKG_CONFIG_SYSROOT_DIR=$root PKG_CONFIG_LIBDIR=$libdir/pkgconfig \
    pkg-config --cflags --libs qorutils)
[ "${flags% }" = "-I$root/usr/include -L$libdir -lqorutils" ] || { echo "$flags"; exit 1; }
