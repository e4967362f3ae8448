#!/usr/bin/env bash
# Builds everything and passes every check. Installs what it needs on Debian 12.
# usage: test.sh [STEP...]     without arguments all steps, in the order of the list below
set -euo pipefail
cd "$(dirname "$0")"
source scripts/common.sh

steps=(format release ubsan headers lint samples spooler)

step_format() { scripts/check-format.sh; }
step_release() { build release && run_tests release; }
step_ubsan() { build ubsan && run_tests ubsan; }
step_headers() { cmake --build --preset ubsan --target all_verify_interface_header_sets; }
step_lint() { scripts/check-lint.sh build/ubsan; }
step_samples() { scripts/check-samples.sh release; }
step_spooler() { scripts/check-spooler.sh release; }

run_tests() { ctest --preset "$1"; }

scripts/install-packages.sh "${build_packages[@]}" "${run_packages[@]}" "${cups_packages[@]}" "${lint_packages[@]}"
for step in "${@:-${steps[@]}}"; do
    say "$step"
    "step_$step"
done
say "All checks passed."
