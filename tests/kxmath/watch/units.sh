#!/bin/bash
# units.sh KXMATH PATH-UNIT SERVICE: checks the units of systemd as they are installed, with another path of the program.
set -euo pipefail
if ! command -v systemd-analyze >/dev/null; then
    echo "skipped: systemd-analyze (Debian package systemd) is not installed"
    exit 0
fi
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cp "$2" "$folder/kxmath-watch@.path"
sed "s|^ExecStart=[^ ]*|ExecStart=$1|" "$3" >"$folder/kxmath-watch@.service"
# verify ends with 0 also after most warnings
warnings=$(systemd-analyze verify --man=no "$folder/kxmath-watch@A12.path" "$folder/kxmath-watch@A12.service" 2>&1 |
    grep kxmath-watch || true)
if [ -n "$warnings" ]; then
    echo "$warnings"
    exit 1
fi
echo "checked by $(systemd-analyze --version | head -1)"
