#!/usr/bin/env bash
# One private MariaDB server for all test programs of a run: in a folder of its own, on a socket, no network. Where it
# cannot be had, the tests that need it say so.
#   private_mariadb.sh start|look|stop FOLDER
set -euo pipefail
folder=$2
if [ "$1" = look ]; then
  [ ! -S "$folder/socket" ] || exit 0
  tail -n 3 "$folder/log" 2>/dev/null || true
  echo "No MariaDB server could be started: what needs one was left out of every room."
  exit 77
fi
stop() {
  if [ -s "$folder/pid" ]; then
    pid=$(cat "$folder/pid")
    kill "$pid" 2>/dev/null || true
    for _ in $(seq 100); do kill -0 "$pid" 2>/dev/null || break; sleep 0.1; done
  fi
  rm -rf "$folder"
}
stop
[ "$1" = stop ] && exit 0
PATH=$PATH:/usr/sbin:/usr/local/sbin
command -v mariadbd >/dev/null || { echo "mariadbd is not installed"; exit 0; }
as_root=()
[ "$(id -u)" -ne 0 ] || as_root=(--user=root)
# A temporary folder of its own too: a server that starts deletes what others have in theirs.
mkdir -p "$folder/tmp"
mariadb-install-db --no-defaults --datadir="$folder/data" --auth-root-authentication-method=normal --skip-test-db \
  "${as_root[@]}" >"$folder/log" 2>&1 || exit 0
# Nothing is waited for on the disk: no machine fails in the midst of a test.
setsid mariadbd --no-defaults --datadir="$folder/data" --socket="$folder/socket" --pid-file="$folder/pid" \
  --tmpdir="$folder/tmp" --skip-networking --skip-log-bin --innodb-buffer-pool-size=128M --innodb-log-file-size=32M \
  --innodb-flush-log-at-trx-commit=0 --innodb-flush-method=nosync --innodb-doublewrite=0 --sync-frm=0 \
  "${as_root[@]}" >>"$folder/log" 2>&1 </dev/null &
for _ in $(seq 200); do
  mariadb-admin --no-defaults --socket="$folder/socket" -u root ping >/dev/null 2>&1 && exit 0
  sleep 0.1
done
rm -f "$folder/socket"
