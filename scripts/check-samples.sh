#!/usr/bin/env bash
# Runs the samples on the simulated warehouse and compares what they say and what arrives.
# usage: check-samples.sh PRESET
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/common.sh

preset=${1:?}
work=build/$preset/samples
label=samples/labels/shipping.lbl

# says SCRIPT ARGUMENT...: the sample says what stands in samples/expected.
says() {
    local script=$1 name
    name=$(basename "$script")
    shift
    on_warehouse "$preset" "$work/$name" "$script" "$@" | tr -d '\r' >"$work/$name.said"
    diff -u "samples/expected/$name.txt" "$work/$name.said"
}

prints() {
    says "$1" "Gate 7 Labels" "$(windows_path "$label")"
    cmp "$label" "$(find "$work/$(basename "$1")/printed" -type f)"
    echo "samples/$1: says what is expected, and the file arrives"
}

# shows PROGRAM ARGUMENT...: the C++ sample prints the lines of its expected text, in that order, each with a time of day.
shows() {
    local program=$1
    shift
    on_dock "$preset" "$work/$program" "$program" "Dock 2 Labels" "$(windows_path "$label")" "$@" | tr -d '\r' |
        sed 's/^[0-9:.]* *//; s/ *$//' >"$work/$program.said"
    diff -u "samples/expected/$program.txt" "$work/$program.said"
    echo "samples/cpp/$program: tells the events that are expected"
}

rm -rf "$work"
mkdir -p "$work"
register "$preset"
prints vbscript/printer.vbs
prints jscript/printer.js
says vbscript/status.vbs Office
echo "samples/vbscript/status.vbs: says what is expected"
says vbscript/printers.vbs
echo "samples/vbscript/printers.vbs: says what is expected"
shows watch "Shipping label"
shows events
