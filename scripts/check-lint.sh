#!/usr/bin/env bash
# clang-tidy and clang's thread safety analysis over the product and the simulator.
# usage: check-lint.sh BUILD_FOLDER
set -euo pipefail
cd "$(dirname "$0")/.."

build=${1:?}
git ls-files 'driver/*.cpp' 'simulator/*.cpp' |
    xargs -P "$(nproc)" -n 1 clang-tidy-14 -p "$build" --quiet --extra-arg=--target=x86_64-w64-mingw32 \
        --extra-arg=-Wno-unknown-warning-option --extra-arg=-Wthread-safety 2> >(grep -v 'warnings generated\|Suppressed\|Use -header-filter' >&2)
