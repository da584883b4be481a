#!/bin/bash
# pkgConfig.sh COMPILER INSTALLED MOVED SOURCE: builds and runs a program with the flags of KxMath.pc, after the installed
# files were moved elsewhere, in the oldest and in the newest language standard.
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
for library in KxMath KxInspect; do # a directory that is there, below the moved prefix
    libdir=$(pkg-config --variable=libdir $library)
    [ "$(realpath "$libdir")" = "$(realpath "$moved/lib")" ] || { echo "$library.pc: libdir is $libdir"; exit 1; }
done
read -ra qt_flags <<<"$(pkg-config --cflags Qt6Core | sed 's/-I/-isystem /g')" # warnings in its headers are not ours
read -ra flags <<<"$(pkg-config --cflags --libs KxMath)"
warnings=(-Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wdouble-promotion -Wshadow -Werror)
if [[ $("$compiler" --version) == *clang* ]]; then
    warnings+=(-Wdocumentation)
fi
for standard in 17 23; do
    "$compiler" -std=c++${standard/23/2b} -DEXPECTED_STANDARD=$standard "${qt_flags[@]}" "${warnings[@]}" \
        "$source" -o "$moved/consumer" "${flags[@]}"
    LD_LIBRARY_PATH=$(pkg-config --variable=libdir KxMath) "$moved/consumer"
done
