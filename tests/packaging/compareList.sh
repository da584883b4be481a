#!/bin/bash
# compareList.sh EXPECTED-LIST HOW-TO-UPDATE COMMAND...: fails when the command prints another list.
set -euo pipefail
expected=$1 how=$2
shift 2
if ! diff -u "$expected" <("$@"); then
    echo "The list (+) is not the one of $expected (-). If that is meant, update it with $how."
    exit 1
fi
