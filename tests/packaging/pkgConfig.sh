#!/bin/bash
# pkgConfig.sh COMPILER INSTALLED MOVED SOURCE: builds and runs a program with the flags of KxMath.pc, after the installed
# files were moved elsewhere.
set -euo pipefail
compiler=$1 installed=$2 moved=$3 source=$4
rm -rf "$moved"
cp -a "$installed" "$moved"
export PKG_CONFIG_PATH=$moved/lib/pkgconfig
case " $(pkg-config --cflags --libs KxMath) " in
*"$installed/"*)
    echo "KxMath.pc names the place of the first installation."
    exit 1
    ;;
esac
# shellcheck disable=SC2046 # the flags are words
"$compiler" "$source" -o "$moved/consumer" $(pkg-config --cflags --libs KxMath)
LD_LIBRARY_PATH=$(pkg-config --variable=libdir KxMath) "$moved/consumer"
