#!/usr/bin/env bash
# Makes the Wine prefix that tests and demonstrations run in; does nothing if it is there.
# usage: make-wine-prefix.sh FOLDER
set -euo pipefail
prefix=${1:?}

[ -f "$prefix/.made" ] && exit 0
rm -rf "$prefix"
mkdir -p "$prefix"
export WINEPREFIX=$prefix WINEDEBUG=-all WINEDLLOVERRIDES="mscoree=;mshtml="
unset DISPLAY
# Without a 32-bit Wine it complains of that half of the system, which is not needed here.
wineboot --init >"$prefix.log" 2>&1 || {
    echo "Wine made no prefix in $prefix:" >&2
    cat "$prefix.log" >&2
    exit 1
}
touch "$prefix/.made"
