#!/usr/bin/env bash
# A second build of what ships, in another folder and from scratch, gives the same bytes.
# usage: check-reproducible.sh PRESET
set -euo pipefail
cd "$(dirname "$0")/.."

preset=${1:?}
second=build/reproducible/in-another-folder

rm -rf "$second"
mkdir -p "$second"
tar --exclude=./build --exclude=./.git -cf - . | tar -xf - -C "$second"
(
    cd "$second"
    source scripts/common.sh
    export CCACHE_RECACHE=1 # compiled again, in the same way as the first
    build "$preset" Vorlane
)
for file in Vorlane.dll Vorlane.dll.debug; do
    cmp "build/$preset/bin/$file" "$second/build/$preset/bin/$file" || {
        echo "Look for what differs with: diff <(xxd build/$preset/bin/$file) <(xxd $second/build/$preset/bin/$file)" >&2
        exit 1
    }
done
echo "Both builds give the same $(stat -c %s "build/$preset/bin/Vorlane.dll") bytes."
