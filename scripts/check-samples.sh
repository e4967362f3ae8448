#!/usr/bin/env bash
# Runs the samples on the simulated spooler and compares what they say and what arrives.
# usage: check-samples.sh PRESET
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/common.sh

preset=${1:?}
work=build/$preset/samples
label=samples/labels/shipping.lbl

check() {
    local script=$1 name output
    name=$(basename "$script")
    output=$work/$name.output
    simulated_printer "$output" >"$work/$name.ini"
    VORLANE_SPOOLER_CONFIG=$(windows_path "$work/$name.ini") spooler=simulator under_wine "$preset" cscript //nologo \
        "$(windows_path "$script")" "Gate 7 Labels" "$(windows_path "$label")" | tr -d '\r' >"$work/$name.said"
    diff -u "samples/expected/$name.txt" <(sed "s|$(windows_path "$label" | sed 's|\\|\\\\|g')|FILE|" "$work/$name.said")
    cmp "$label" "$(find "$output" -type f)"
    echo "$script: says what is expected, and the file arrives"
}

rm -rf "$work"
mkdir -p "$work"
register "$preset"
for script in samples/vbscript/printer.vbs samples/jscript/printer.js; do check "$script"; done
