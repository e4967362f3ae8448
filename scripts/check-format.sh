#!/usr/bin/env bash
# Every source of ours is formatted by .clang-format.
set -euo pipefail
cd "$(dirname "$0")/.."

mapfile -t sources < <(find bench driver simulator tests -name '*.h' -o -name '*.cpp')
clang-format-14 --dry-run --Werror "${sources[@]}" || {
    echo "Repair it with: find bench driver simulator tests -name '*.h' -o -name '*.cpp' | xargs clang-format-14 -i" >&2
    exit 1
}
