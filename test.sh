#!/usr/bin/env bash
# Builds everything and passes every check. Installs what it needs on Debian 12.
# usage: test.sh [STEP...]     without arguments all steps, in the order of the list below
set -euo pipefail
cd "$(dirname "$0")"
source scripts/common.sh

steps=(rooms format release ubsan headers lint tests samples spooler)

step_rooms() { scripts/check-rooms.py; }
step_format() { scripts/check-format.sh; }
step_release() { build release && start_tests release; }
step_ubsan() { build ubsan && start_tests ubsan; }
step_headers() { cmake --build --preset ubsan --target all_verify_interface_header_sets; }
step_lint() { scripts/check-lint.sh build/ubsan; }
step_tests() { finish_tests; }
step_samples() { scripts/check-samples.sh release; }
step_spooler() { scripts/check-spooler.sh release; }

# The tests wait for most of their time, so they run beside the next build.
declare -A running=()
start_tests() {
    ctest --preset "$1" >"$(log_of "$1" tests)" 2>&1 &
    running[$1]=$!
}

# Waits for all tests that were started and shows what they said.
finish_tests() {
    local preset result=0
    for preset in "${!running[@]}"; do
        say "tests of the preset $preset"
        wait "${running[$preset]}" || result=1
        cat "$(log_of "$preset" tests)"
        unset "running[$preset]"
    done
    return "$result"
}
trap 'kill "${running[@]}" 2>/dev/null || true' EXIT

scripts/install-packages.sh "${build_packages[@]}" "${run_packages[@]}" "${cups_packages[@]}" "${lint_packages[@]}"
for step in "${@:-${steps[@]}}"; do
    say "$step"
    "step_$step"
done
finish_tests
say "All checks passed."
