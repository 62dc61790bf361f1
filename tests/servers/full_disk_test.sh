#!/usr/bin/env bash
# A run meets a server whose disk is full, and completes when there is room again:
# with-postgres.sh full_disk_test.sh PROGRAM LIBRARY
set -euo pipefail
program=$1 library=$2
server=$QXIMPORTJOB_TEST_POSTGRES
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export HOME=$folder XDG_CONFIG_HOME=$folder/config XDG_DATA_HOME=$folder/data
port=$(cat "$server/port")
export PGPASSWORD=${QXIMPORTJOB_TEST_ODBC##*PWD=}

fail() {
  echo "FAILED: $*" >&2
  cat "$folder/messages" >&2 2>/dev/null || true
  exit 1
}
ask() { psql -X -q -A -t -h 127.0.0.1 -p "$port" -U qx -d qx -c "$1"; }
expect() { # STATUS COMMAND...
  local wanted=$1 status=0
  shift
  "$program" --date 24.11.2026 "$@" >"$folder/output" 2>"$folder/messages" || status=$?
  [ "$status" -eq "$wanted" ] || fail "$* ends with $status"
}
# Whoever runs the server must be able to read it.
install -m 755 "$library" "$server/full.so"
restart() {
  local process
  process=$(head -n 1 "$server/data/postmaster.pid")
  kill -INT "$process"
  while [ -e "/proc/$process" ] && ! grep -q '^State:.Z' "/proc/$process/status" 2>/dev/null; do sleep 0.02; done
  LD_PRELOAD=$server/full.so FULL_DISK_WHEN=$server/full "$server/start" </dev/null &
  for _ in $(seq 300); do
    pg_isready -q -h 127.0.0.1 -p "$port" && return
    sleep 0.05
  done
  fail "the server does not start again"
}
jobs() { # PREFIX
  for number in $(seq 300); do
    printf '{"type":"Kunde","JobID":"%s%d","Kundennummer":"%s%d","Bez1":"Firma","Bez2":"%0300d"}\n' "$1" "$number" "$1" "$number" 0
  done
}

expect 0 init
jobs A >"$folder/first"
jobs B >"$folder/second"
expect 0 stage "$folder/first"
restart

touch "$server/full"
expect 4 process
grep -q 'No space left on device' "$folder/messages" || fail "no cause"
grep -q 'Make room on the server' "$folder/messages" || fail "no next step"
done=$(ask "Select Count(*) From importkopf Where jobtype = 13")
[ "$done" -lt 300 ] || fail "the disk was not full"
[ "$(ask "Select Count(*) From kundenstamm")" = "$done" ] || fail "customers without their jobs"
[ "$(ask "Select Count(*) From protokollpositionen")" = "$done" ] || fail "lines without their jobs"
expect 4 stage "$folder/second"
grep -q 'Make room on the server' "$folder/messages" || fail "no next step of staging"
[ "$(ask "Select Count(*) From importkopf")" = 300 ] || fail "half of a file is staged"

rm "$server/full"
expect 0 process
expect 0 stage "$folder/second"
expect 0 process
for table in kundenstamm protokollpositionen; do
  [ "$(ask "Select Count(*) From $table")" = 600 ] || fail "rows of $table"
done
echo "$done of 300 jobs were done when the disk was full"
