#!/usr/bin/env bash
# Runs the samples on the simulated warehouse and compares what they say and what arrives.
# usage: check-samples.sh PRESET
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/common.sh

preset=${1:?}
work=build/$preset/samples
label=samples/labels/shipping.lbl

# says WORLD SCRIPT ARGUMENT...: the sample says in that world what stands in samples/expected.
says() {
    local world=$1 script=$2 name
    name=$(basename "$script")
    shift 2
    on_simulator "$preset" "$world.ini" "$work/$name" cscript //nologo "$(windows_path "samples/$script")" "$@" |
        tr -d '\r' >"$work/$name.said"
    diff -u "samples/expected/$name.txt" "$work/$name.said"
    echo "samples/$script: says what is expected"
}

prints() {
    says warehouse "$1" "Gate 7 Labels" "$(windows_path "$label")"
    cmp "$label" "$(find "$work/$(basename "$1")/printed" -type f)"
    echo "samples/$1: sends the file, which arrives"
}

# events PROGRAM NAME WORLD ARGUMENT...: the C++ sample prints the lines of samples/expected/NAME.txt, in that order, each
# with a time of day. Whether it sees a job before or after its first page has begun is a matter of luck.
events() {
    local program=$1 name=$2 world=$3 verdict=0
    shift 3
    on_simulator "$preset" "$world.ini" "$work/$name" "build/$preset/bin/$program.exe" "$@" >"$work/$name.raw" ||
        verdict=$? # of the job
    tr -d '\r' <"$work/$name.raw" | sed 's/^[0-9:.]* *//; s/ *$//; /TotalPagesChanged *0 -> 1$/d' >"$work/$name.said"
    diff -u "samples/expected/$name.txt" "$work/$name.said"
    echo "samples/cpp/$program: tells the events of $name.txt, and ends with $verdict"
}

rm -rf "$work"
mkdir -p "$work"
register "$preset"
prints vbscript/printer.vbs
prints jscript/printer.js
says warehouse vbscript/status.vbs Office
says warehouse vbscript/printers.vbs
says labels vbscript/query.vbs "Gate 2 Labels" "?RIBBON"
says labels vbscript/settings.vbs "Gate 1 Labels" "$(windows_path "$work/settings.txt")"
events watch watch dock "Dock 2 Labels" "$(windows_path "$label")" "Shipping label"
events events events dock "Dock 2 Labels" "$(windows_path "$label")"
events watch watch-verified labels "Gate 1 Labels" "$(windows_path "$label")" "Shipping label"
events watch watch-cancelled labels "Gate 2 Labels" "$(windows_path samples/labels/pallet.lbl)" "Pallet labels"
