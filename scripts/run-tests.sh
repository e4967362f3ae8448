#!/usr/bin/env bash
# Runs the tests of a preset over all cores. Of a program that fails it shows the tests that failed, not the others.
# usage: run-tests.sh PRESET
set -euo pipefail
cd "$(dirname "$0")/.."

preset=${1:?}

# A test that neither passed nor failed is where its program crashed or hung.
failures_only() {
    awk '
        function show() { printf "%s", kept; kept = ""; inside = 0 }
        /^\[ RUN      \]/        { show(); inside = 1 }
        /^\[       OK \]/        { kept = ""; inside = 0; next }
        /^ *[0-9]+\/[0-9]+ Test/ { show() }
        inside                   { kept = kept $0 "\n" }
        !inside && !/^\[[-=]+\]/ { print; fflush() }
        /^\[  FAILED  \]/        { show() }
        END                      { show() }'
}

ctest --preset "$preset" -j "$(nproc)" | failures_only || {
    echo "Repeat what failed with: ctest --preset $preset --rerun-failed" >&2
    exit 1
}
