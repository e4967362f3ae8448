#!/usr/bin/env bash
# The main job on real input: a script opens a printer through Vorlane.Printer, reads and changes it, and sends it a
# label file, on a simulated spooler and on a real one; a program follows label jobs from their submission to their final
# event, whose word comes from the device; a script asks the device, and another one changes its driver's settings.
# Installs what it needs on Debian 12.
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
    local world=$work/printer/dock.ini
    rm -rf "$work/printer"
    mkdir -p "$work/printer"
    cp samples/spooler/dock.ini "$world"
    on_kept release "$world" build/release/bin/events.exe "Dock 2 Labels" "$(windows_path "$label")"
    printf '\n   -> once more, in a new process: the odometer goes on where it was\n\n'
    on_kept release "$world" build/release/bin/events.exe "Dock 2 Labels" "$(windows_path "$label")"
}

# a_job_at_the_device PRINTER FILE NAME: the program's exit code is the job's verdict.
a_job_at_the_device() {
    local verdict=0
    on_labels release "$work/labels" build/release/bin/watch.exe "$1" "$(windows_path "$2")" "$3" || verdict=$?
    case $verdict in
    0) echo "   -> delivered" ;;
    1) echo "   -> cancelled" ;;
    *) return $verdict ;;
    esac
}

a_question_to_the_device() {
    on_labels release "$work/labels" cscript //nologo "$(windows_path samples/vbscript/query.vbs)" "$@"
}

settings_of_the_driver() {
    local file=$work/labels/settings.txt
    on_labels release "$work/labels" cscript //nologo "$(windows_path samples/vbscript/settings.vbs)" "$1" \
        "$(windows_path "$file")"
    sed 's/^/   | /' "$file"
}

on_a_real_spooler() {
    local received=$work/received.lbl
    scripts/cups-queue.sh "$work/cups" Label "$received" scripts/run-sample.sh release vbscript/printer.vbs Label "$label"
    same_bytes "$received"
}

scripts/install-packages.sh "${packages_to_build[@]}" "${packages_to_run[@]}"
say "Building Vorlane.dll"
build release "${sample_targets[@]}"
register release
mkdir -p "$work"

say "A script on the simulated spooler"
on_the_simulator
say "A label job, watched from its submission to its final event (samples/cpp/watch)"
a_job_and_its_events
say "A printer's own events, while another thread changes it and prints on it (samples/cpp/events)"
a_printer_and_its_events
say "A label job that the device has printed and verified"
a_job_at_the_device "Gate 1 Labels" "$label" "Shipping label"
say "A job of three labels on a device with ribbon for two"
a_job_at_the_device "Gate 2 Labels" samples/labels/pallet.lbl "Pallet labels"
say "A question to the device, and its answer as text and as bytes (samples/vbscript/query.vbs)"
a_question_to_the_device "Gate 2 Labels" "?RIBBON"
say "The driver's settings: exported, changed, imported, reset (samples/vbscript/settings.vbs)"
settings_of_the_driver "Gate 1 Labels"
say "The same script on a real spooler: Wine's, over a CUPS queue whose device is a TCP socket"
on_a_real_spooler
say "Done: build/release/bin/Vorlane.dll"
