#!/bin/bash
# installedFiles.sh PREFIX: the files and links below it.
set -euo pipefail
cd "$1"
find . -not -type d | cut -c 3- | LC_ALL=C sort
