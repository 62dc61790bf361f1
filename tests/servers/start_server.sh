#!/usr/bin/env bash
# Starts the PostgreSQL server that the tests of one ctest run share: start_server.sh SCRIPTS-FOLDER FILE
# FILE holds the connection string as long as the server serves. It stops when FILE is removed, or when ctest is gone.
set -euo pipefail
scripts=$1 file=$2
# Another database was named for these tests, or the whole run stands beside a server.
[ -z "${QXIMPORTJOB_TEST_ODBC:-}" ] || exit 0

rm -f "$file"
ctest=$PPID
# shellcheck disable=SC2016
setsid "$scripts/with-postgres.sh" --fast bash -c '
  file=$1 ctest=$2
  (umask 077 && printf "%s\n" "$QXIMPORTJOB_TEST_ODBC" >"$file.part")
  mv "$file.part" "$file"
  while [ -e "$file" ] && kill -0 "$ctest" 2>/dev/null; do sleep 0.1; done
  rm -f "$file"' _ "$file" "$ctest" </dev/null >"$file.log" 2>&1 &
server=$!
echo $server >"$file.process"
for _ in $(seq 600); do
  [ -e "$file" ] && exit 0
  kill -0 $server 2>/dev/null || break
  sleep 0.05
done
cat "$file.log" >&2
exit 1
