#!/usr/bin/env bash
# Runs a sample script on Wine's own spooler.
# usage: run-sample.sh PRESET SCRIPT [PRINTER FILE], the script named as below samples/
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/common.sh

preset=${1:?} script=${2:?}
arguments=()
[ $# -le 2 ] || arguments=("${3:?}" "$(windows_path "${4:?}")")
under_wine "$preset" cscript //nologo "$(windows_path "samples/$script")" "${arguments[@]}"
