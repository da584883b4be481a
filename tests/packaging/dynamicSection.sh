#!/bin/bash
# dynamicSection.sh LIBRARY: its name and the libraries that it needs.
set -euo pipefail
LC_ALL=C readelf -d "$1" | sed -n 's/.*(\(SONAME\|NEEDED\)).*\[\(.*\)\]/\1 \2/p' | LC_ALL=C sort
