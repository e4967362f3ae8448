#!/usr/bin/env bash
# Runs the tests of a preset over all cores. Of a program that fails it shows the tests that failed, not the others.
# usage: run-tests.sh PRESET
set -euo pipefail
cd "$(dirname "$0")/.."

preset=${1:?}

ctest --preset "$preset" -j "$(nproc)" | scripts/failures-only.py || {
    echo "Repeat what failed with: ctest --preset $preset --rerun-failed" >&2
    exit 1
}
