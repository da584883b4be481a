#!/bin/bash
# plainBuild.sh CMAKE SOURCE BUILD PREFIX COMPILER: the three commands of a user, with a compiler of his choice.
set -euo pipefail
cmake=$1 source=$2 build=$3 prefix=$4
export CXX=$5
rm -rf "$prefix"
"$cmake" -S "$source" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release
"$cmake" --build "$build"
"$cmake" --install "$build" --prefix "$prefix"
