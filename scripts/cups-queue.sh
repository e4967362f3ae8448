#!/usr/bin/env bash
# A real spooler for tests and demonstrations: a private CUPS server with one raw queue whose device is a TCP socket on
# this machine, and a listener there that keeps what arrives. Server and listener take what is free, so several can run.
# usage: cups-queue.sh FOLDER QUEUE RECEIVED COMMAND...
# Runs COMMAND with CUPS_SERVER set, waits for one document to arrive, and leaves its bytes in the file RECEIVED.
set -euo pipefail

folder=$(realpath -m "${1:?}") queue=${2:?} received=$(realpath -m "${3:?}")
shift 3
short_path=$(mktemp -d) # the name of a socket can't be long
server=$short_path/cups.sock
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
    rm -rf "$short_path"
}
trap cleanup EXIT

# wait_until CONDITION WHAT LOG: tries for 10 seconds.
wait_until() {
    for ((try = 0; try < 100; ++try)); do
        "$1" && return
        sleep 0.1
    done
    echo "$2" >&2
    cat "$3" >&2
    exit 1
}

server_runs() { lpstat -r 2>/dev/null | grep -q 'is running'; }
listener_listens() { device=$(grep -o -m 1 '127\.0\.0\.1:[0-9]*' "$folder/log/listener"); }

/usr/sbin/cupsd -f -c "$folder/cupsd.conf" -s "$folder/cups-files.conf" &
pids+=($!)
socat -d -d -u TCP-LISTEN:0,bind=127.0.0.1 "CREATE:$received" 2>"$folder/log/listener" &
listener=$!
pids+=("$listener")

export CUPS_SERVER=$server
wait_until server_runs "The CUPS server did not start." "$folder/log/error"
wait_until listener_listens "The listener did not start." "$folder/log/listener"
lpadmin -p "$queue" -E -v "socket://$device" -m raw 2>/dev/null

"$@"

timeout "$arrival_limit_s" tail --pid="$listener" -f /dev/null || {
    echo "Nothing arrived at $device within $arrival_limit_s seconds." >&2
    exit 1
}
