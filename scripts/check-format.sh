#!/usr/bin/env bash
# Every source of ours is formatted by .clang-format.
set -euo pipefail
cd "$(dirname "$0")/.."

mapfile -t sources < <(git ls-files '*.h' '*.cpp')
clang-format-14 --dry-run --Werror "${sources[@]}" || {
    echo "Repair it with: clang-format-14 -i \$(git ls-files '*.h' '*.cpp')" >&2
    exit 1
}
