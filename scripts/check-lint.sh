#!/usr/bin/env bash
# clang-tidy and clang's thread safety analysis over the product.
# usage: check-lint.sh BUILD_FOLDER
set -euo pipefail
cd "$(dirname "$0")/.."

build=${1:?}
arguments=(-p "$build" --quiet --extra-arg=--target=x86_64-w64-mingw32 --extra-arg=-Wno-unknown-warning-option
    --extra-arg=-Wno-ignored-optimization-argument --extra-arg=-Wthread-safety)
# clang does not look for the library of this variant of the compiler by itself.
for folder in $(x86_64-w64-mingw32-g++-posix -E -x c++ -v /dev/null 2>&1 | grep -E '^ .*/c\+\+' | sort -u); do
    arguments+=("--extra-arg=-isystem$folder")
done

git ls-files 'driver/*.cpp' | xargs -P "$(nproc)" -n 4 clang-tidy-14 "${arguments[@]}" \
    2> >(grep -vE 'warnings? (and [0-9]+ errors? )?generated|Suppressed|Use -header-filter|Error while' >&2)
