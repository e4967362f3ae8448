#!/usr/bin/env bash
# Makes the Wine prefix that tests and demonstrations run in; does nothing if it is there.
set -euo pipefail
prefix=${1:?usage: make-wine-prefix.sh FOLDER}

[ -f "$prefix/.made" ] && exit 0
rm -rf "$prefix"
mkdir -p "$prefix"
export WINEPREFIX=$prefix WINEDEBUG=-all WINEDLLOVERRIDES="mscoree=;mshtml="
unset DISPLAY
wineboot --init
wineserver --wait
touch "$prefix/.made"
