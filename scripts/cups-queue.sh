#!/usr/bin/env bash
# A real spooler for tests and demonstrations: a private CUPS server with one raw queue whose device is a TCP socket on
# this machine, and a listener there that keeps what arrives.
# usage: cups-queue.sh FOLDER QUEUE RECEIVED COMMAND...
# Runs COMMAND with CUPS_SERVER set, waits for one document to arrive, and leaves its bytes in the file RECEIVED.
set -euo pipefail

folder=$(realpath -m "${1:?}") queue=${2:?} received=$(realpath -m "${3:?}")
shift 3
server=127.0.0.1:6310
device=127.0.0.1:9100
arrival_limit_s=60

rm -rf "$folder"
mkdir -p "$folder"/{spool,cache,state,log,wait}

cat >"$folder/cups-files.conf" <<CONF
ServerRoot $folder
RequestRoot $folder/spool
CacheDir $folder/cache
StateDir $folder/state
AccessLog $folder/log/access
ErrorLog $folder/log/error
PageLog $folder/log/page
SystemGroup lpadmin
CONF
cat >"$folder/cupsd.conf" <<CONF
Listen $server
LogLevel warn
WebInterface No
Browsing Off
DefaultAuthType None
<Location />
  Order allow,deny
  Allow localhost
</Location>
<Location /admin>
  Order allow,deny
  Allow localhost
</Location>
<Policy default>
  JobPrivateAccess all
  JobPrivateValues none
  SubscriptionPrivateAccess all
  SubscriptionPrivateValues none
  <Limit All>
    Order allow,deny
    Allow localhost
  </Limit>
</Policy>
CONF

pids=()
cleanup() {
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
    wait 2>/dev/null || true
}
trap cleanup EXIT

/usr/sbin/cupsd -f -c "$folder/cupsd.conf" -s "$folder/cups-files.conf" &
pids+=($!)

export CUPS_SERVER=$server
for ((try = 0; ; ++try)); do
    lpstat -r 2>/dev/null | grep -q 'is running' && break
    ((try < 100)) || { echo "The CUPS server did not start." >&2; cat "$folder/log/error" >&2; exit 1; }
    sleep 0.1
done
lpadmin -p "$queue" -E -v "socket://$device" -m raw 2>/dev/null

socat -u "TCP-LISTEN:${device#*:},bind=${device%:*},reuseaddr" "CREATE:$received" &
listener=$!
pids+=("$listener")

"$@"

timeout "$arrival_limit_s" tail --pid="$listener" -f /dev/null || {
    echo "Nothing arrived at $device within $arrival_limit_s seconds." >&2
    exit 1
}
