#!/usr/bin/env bash
# Measures what the product costs and prints the tables of docs/performance.md: takes five minutes, two of which pass idle.
# usage: bench.sh [TABLE...]     members enumeration latency rate jobs device memory idle
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/common.sh

scripts/install-packages.sh "${packages_to_build[@]}" "${packages_to_run[@]}" >&2
build release vorlane_bench >&2
cmake/make-wine-prefix.sh "$PWD/build/release/wine"
spooler=simulator under_wine release build/release/bin/vorlane_bench.exe "$@"
