#!/usr/bin/env bash
# Installs the Debian packages that are missing, as root or through sudo; needs no network if none is.
# usage: install-packages.sh PACKAGE...
set -euo pipefail
cd "$(dirname "$0")/.."

log=build/logs/packages.log

give_up() {
    echo "$1 Packages missing: ${missing[*]}" >&2
    exit 1
}

missing=()
for package in "$@"; do
    status=$(dpkg-query --show --showformat='${db:Status-Status}' "$package" 2>/dev/null || true)
    [ "$status" = installed ] || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

command -v apt-get >/dev/null || give_up "This is not Debian: install what is needed by hand."
as_root=()
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || give_up "Installing packages needs root or sudo."
    as_root=(sudo)
fi

echo "Installing ${missing[*]}"
mkdir -p build/logs
export DEBIAN_FRONTEND=noninteractive
# A source that fails is no harm as long as the others have what is missing.
"${as_root[@]}" apt-get update -qq >"$log" 2>&1 || true
"${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >>"$log" 2>&1 ||
    give_up "apt-get: $(grep -m 1 -E '^(E:|W: Failed)' "$log" || true) ($log has all of it)."
