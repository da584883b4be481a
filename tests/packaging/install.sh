#!/bin/bash
# install.sh CMAKE BUILD PREFIX: installs into an empty directory.
set -euo pipefail
cmake=$1 build=$2 prefix=$3
rm -rf "$prefix"
"$cmake" --install "$build" --prefix "$prefix"
