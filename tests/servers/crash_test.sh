#!/usr/bin/env bash
# Kills the database server while a run writes, several times, and checks that a rerun completes the work:
# with-postgres.sh crash_test.sh PROGRAM KILLS
set -euo pipefail
program=$1 wanted=$2
server=$QXIMPORTJOB_TEST_POSTGRES
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export HOME=$folder XDG_CONFIG_HOME=$folder/config XDG_DATA_HOME=$folder/data
port=$(cat "$server/port")
export PGPASSWORD=${QXIMPORTJOB_TEST_ODBC##*PWD=}
kills=0

fail() {
  echo "FAILED after $kills kills: $*" >&2
  exit 1
}
ask() { psql -X -q -A -t -h 127.0.0.1 -p "$port" -U qx -d "$1" -c "$2"; }
on() { # DATABASE VERB...
  local database=$1
  shift
  QXIMPORTJOB_DB="${QXIMPORTJOB_DB/Database=qx/Database=$database}" "$program" "$@" --date 24.11.2026
}
# Every row of every table, without row keys, line numbers of the protocol and of changes, and moments, with which the names of
# protocols begin.
result() { # DATABASE
  # The lock belongs to the process that held it, the book of runs has those that were killed, and the counter of the
  # changes names its database.
  psql -X -q -A -t -h 127.0.0.1 -p "$port" -U qx -d "$1" <<'QUERY' | sed -E 's/"20[0-9]{12}[A-Z0-9]*"/"moment"/g' | sort |
Select format('Select %L, to_jsonb(t) - ''{lfd,zeile,folge}''::text[] From %I t', table_name, table_name)
From information_schema.tables Where table_schema = 'public' And table_name Not In ('lockcontrol', 'importlaeufe', 'zaehlerstaende') Order By 1 \gexec
QUERY
    # A job that could not be written is tried, logged and told again by every run; one that is done is not.
    awk '!(/"text2": "Fehler"/ || (/^zustandswechsel/ && !/"jobtype": [1-4]3[,}]/)) || !seen[$0]++'
}

# SIGKILL for the server and all its sessions, as if the machine had lost its power.
kill_server() {
  local process processes
  process=$(head -n 1 "$server/data/postmaster.pid")
  processes="$process $(cat "/proc/$process/task/$process/children")"
  # shellcheck disable=SC2086
  kill -KILL $processes
  # The server does not start while one of them is left.
  for process in $processes; do
    while [ -e "/proc/$process" ] && ! grep -q '^State:.Z' "/proc/$process/status" 2>/dev/null; do sleep 0.02; done
  done
}
start_server() {
  "$server/start" </dev/null &
  for _ in $(seq 300); do
    pg_isready -q -h 127.0.0.1 -p "$port" && return
    sleep 0.05
  done
  fail "the server does not start again"
}

# Copies the files between two checkpoints. Otherwise the copy of a sequence gives numbers that no log holds, and a crash
# lets it give them again.
copy_database() { # FROM TO
  ask postgres "Create Database $2 Template $1 Strategy file_copy"
}

on qx init --demo >/dev/null
copy_database qx undisturbed
started=$EPOCHREALTIME
on undisturbed process >/dev/null || [ $? -eq 1 ] || fail "the undisturbed run"
length=$(awk -v a="$started" -v b="$EPOCHREALTIME" 'BEGIN { print b - a }')
# Every later run empties the reasons of the released jobs that are done, so both results are those of one more run.
again() { on "$1" process >/dev/null || [ $? -eq 1 ] || fail "the run after the last one"; }
again undisturbed
result undisturbed >"$folder/expected"

for ((round = 1; round <= wanted; ++round)); do
  [ "$round" -eq 1 ] || {
    ask postgres "Drop Database qx"
    copy_database start qx
  }
  [ "$round" -gt 1 ] || copy_database qx start
  on qx process >"$folder/output" 2>"$folder/messages" &
  run=$!
  sleep "$(awk -v all="$length" -v round="$round" -v wanted="$wanted" 'BEGIN { print all * round / (wanted + 1) }')"
  kill_server
  status=0
  wait $run || status=$?
  case $status in
  4)
    kills=$((kills + 1))
    grep -q 'Check that the server runs' "$folder/messages" || fail "no next step: $(cat "$folder/messages")"
    ;;
  0 | 1) ;;
  *) fail "exit status $status: $(cat "$folder/messages")" ;;
  esac
  start_server
  status=0
  on qx process >"$folder/output" 2>"$folder/messages" || status=$?
  [ $status -le 1 ] || fail "the rerun ends with $status: $(cat "$folder/messages")"
  again qx
  result qx >"$folder/found"
  diff "$folder/expected" "$folder/found" >"$folder/difference" ||
    fail "$(diff <(sed 's/, "/\n  "/g' "$folder/expected") <(sed 's/, "/\n  "/g' "$folder/found") | head -n 40)"
done
[ "$kills" -gt 0 ] || fail "no kill met a run"
echo "$kills kills, every job written once"
