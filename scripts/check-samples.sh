#!/usr/bin/env bash
# Runs the samples on the simulated printers of samples/spooler and compares what they say and what arrives.
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

# without_times: the lines of a C++ sample without their times of day. Whether it sees a job before or after its first page
# has begun is a matter of luck.
without_times() { tr -d '\r' | sed 's/^[0-9:.]* *//; s/ *$//; /TotalPagesChanged *[01] -> [01]$/d'; }

# events EXIT_CODE PROGRAM NAME WORLD ARGUMENT...: the C++ sample prints the lines of samples/expected/NAME.txt, in that
# order, each with a time of day, and ends with that code, which is the verdict on the job.
events() {
    local expected=$1 program=$2 name=$3 world=$4 code=0
    shift 4
    on_simulator "$preset" "$world.ini" "$work/$name" "build/$preset/bin/$program.exe" "$@" >"$work/$name.raw" || code=$?
    without_times <"$work/$name.raw" >"$work/$name.said"
    diff -u "samples/expected/$name.txt" "$work/$name.said"
    [ "$code" -eq "$expected" ] || { echo "$program ends with $code, not $expected" >&2; return 1; }
    echo "samples/cpp/$program: tells the events of $name.txt, and ends with $code"
}

# The odometer is kept with the printer, which outlives the process: one prints, the next one finds it counted.
counts_on() {
    local world=$work/counts_on/dock.ini run
    mkdir -p "${world%/*}"
    cp samples/spooler/dock.ini "$world"
    for run in events events-again; do
        on_kept "$preset" "$world" "build/$preset/bin/events.exe" "Dock 2 Labels" "$(windows_path "$label")" |
            without_times >"$work/$run.kept"
        diff -u "samples/expected/$run.txt" "$work/$run.kept"
    done
    echo "samples/cpp/events: finds the odometer of the process before"
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
events 0 watch watch dock "Dock 2 Labels" "$(windows_path "$label")" "Shipping label"
events 0 events events dock "Dock 2 Labels" "$(windows_path "$label")"
events 0 watch watch-verified labels "Gate 1 Labels" "$(windows_path "$label")" "Shipping label"
events 1 watch watch-cancelled labels "Gate 2 Labels" "$(windows_path samples/labels/pallet.lbl)" "Pallet labels"
counts_on
