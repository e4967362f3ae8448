#!/usr/bin/env bash
# The main job on real input: a script opens a printer through Vorlane.Printer, reads and changes it, and sends it a
# label file, on a simulated spooler and on a real one; and a program follows a label job from its submission to its final
# event. Installs what it needs on Debian 12.
set -euo pipefail
cd "$(dirname "$0")"
source scripts/common.sh

label=samples/labels/shipping.lbl
work=build/demo

same_bytes() {
    cmp "$label" "$1"
    printf '\n   -> %s bytes arrived, the same as in %s\n' "$(stat -c %s "$1")" "$label"
}

on_the_simulator() {
    on_warehouse release "$work/simulated" vbscript/printer.vbs "Gate 7 Labels" "$(windows_path "$label")"
    same_bytes "$(find "$work/simulated/printed" -type f)"
}

a_job_and_its_events() {
    on_dock release "$work/dock" watch "Dock 2 Labels" "$(windows_path "$label")" "Shipping label"
    same_bytes "$(find "$work/dock/printed" -type f)"
}

a_printer_and_its_events() {
    on_dock release "$work/dock" events "Dock 2 Labels" "$(windows_path "$label")"
}

on_a_real_spooler() {
    local received=$work/received.lbl
    scripts/cups-queue.sh "$work/cups" Label "$received" scripts/run-sample.sh release vbscript/printer.vbs Label "$label"
    same_bytes "$received"
}

scripts/install-packages.sh "${packages_to_build[@]}" "${packages_to_run[@]}"
say "Building Vorlane.dll"
build release Vorlane spooler_simulator watch events
register release
mkdir -p "$work"

say "A script on the simulated spooler"
on_the_simulator
say "A label job, watched from its submission to its final event (samples/cpp/watch)"
a_job_and_its_events
say "A printer's own events, while another thread changes it and prints on it (samples/cpp/events)"
a_printer_and_its_events
say "The same script on a real spooler: Wine's, over a CUPS queue whose device is a TCP socket"
on_a_real_spooler
say "Done: build/release/bin/Vorlane.dll"
