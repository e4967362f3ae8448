#!/usr/bin/env bash
# A sample on a spooler that nobody here wrote: Wine's, over a CUPS queue. What it sends arrives byte for byte.
# usage: check-spooler.sh PRESET
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/common.sh

preset=${1:?}
work=build/$preset/spooler
label=samples/labels/shipping.lbl

register "$preset"
mkdir -p "$work"
scripts/cups-queue.sh "$work/cups" Label "$work/received.lbl" \
    scripts/run-sample.sh "$preset" vbscript/printer.vbs Label "$label" >"$work/said"
cmp "$label" "$work/received.lbl"
grep -q '^Location is now: *Gate 7' "$work/said"
echo "On Wine's own spooler the file arrives at the CUPS queue's device."
