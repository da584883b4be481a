#!/bin/bash
# exportedSymbols.sh LIBRARY: the names that a library exports, sorted.
set -euo pipefail
nm -DC --defined-only "$1" | cut -d ' ' -f 3- | LC_ALL=C sort -u
