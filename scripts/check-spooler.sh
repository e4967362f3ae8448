#!/usr/bin/env bash
# Samples on a spooler that nobody here wrote: Wine's, over a CUPS queue. What one sends arrives byte for byte, and one
# lists the queue.
# usage: check-spooler.sh PRESET
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/common.sh

preset=${1:?}
work=build/$preset/spooler
label=samples/labels/shipping.lbl

register "$preset"
mkdir -p "$work"

# list_and_print: both samples, while the queue is there.
list_and_print() {
    scripts/run-sample.sh "$preset" vbscript/printers.vbs >"$work/listed"
    scripts/run-sample.sh "$preset" vbscript/printer.vbs Label "$label" >"$work/said"
}
export -f list_and_print
export preset work label

scripts/cups-queue.sh "$work/cups" Label "$work/received.lbl" bash -ec list_and_print
cmp "$label" "$work/received.lbl"
grep -q '^Location is now: *Gate 7' "$work/said"
tr -d '\r' <"$work/listed" | grep -qx 'Label'
echo "On Wine's own spooler the file arrives at the CUPS queue's device, and the queue is listed."
