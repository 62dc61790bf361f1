#!/usr/bin/env bash
# A private server serves its command and is gone afterwards: with_postgres_test.sh SCRIPTS-FOLDER
set -euo pipefail
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
# A copy that every user may read.
chmod 755 "$folder"
script=$folder/with-postgres.sh
cp "$1/with-postgres.sh" "$script"

fail() {
  echo "$*" >&2
  exit 1
}
expect() { [ "$2" = "$3" ] || fail "$1: expected '$2', found '$3'"; }
requireGone() { # FOLDER PROCESS
  ! [ -e "$1" ] || fail "the folder $1 is left"
  # A process that nobody has waited for yet has ended all the same.
  case $(sed 's/.*) //' "/proc/$2/stat" 2>/dev/null || true) in ''|Z*) ;; *) fail "the process $2 still runs" ;; esac
}

# The standard input and output are the command's alone, and so is the exit status.
serve() {
  local status=0 found
  found=$(echo input | "$@" "$script" --fast bash -c '
    cat
    echo "$QXIMPORTJOB_TEST_POSTGRES" "$(head -n 1 "$QXIMPORTJOB_TEST_POSTGRES/data/postmaster.pid")"
    [ "$QXIMPORTJOB_DB" = "odbc:$QXIMPORTJOB_TEST_ODBC" ] || exit 3
    pair=${QXIMPORTJOB_TEST_ODBC#*Port=}
    export PGPASSWORD=${QXIMPORTJOB_TEST_ODBC##*PWD=}
    psql -X -h 127.0.0.1 -p "${pair%%;*}" -U qx -d qx -Atc "Show server_encoding" || exit 4
    exit 7') || status=$?
  expect "exit status" 7 $status
  mapfile -t lines <<<"$found"
  expect "standard input" input "${lines[0]}"
  expect encoding UTF8 "${lines[2]}"
  expect "number of lines" 3 ${#lines[@]}
  # shellcheck disable=SC2086
  requireGone ${lines[1]}
}
serve env
[ "$(id -u)" -ne 0 ] || serve setpriv --reuid=nobody --regid="$(id -g nobody)" --clear-groups

# A signal ends command and server.
"$script" --fast bash -c 'echo "$QXIMPORTJOB_TEST_POSTGRES $(head -n 1 "$QXIMPORTJOB_TEST_POSTGRES/data/postmaster.pid") $$" >"$1.part"
  mv "$1.part" "$1"; exec sleep 60' _ "$folder/started" &
program=$!
while ! [ -e "$folder/started" ]; do
  kill -0 $program 2>/dev/null || fail "the server did not start"
  sleep 0.05
done
read -r data server command <"$folder/started"
kill -TERM $program
status=0
wait $program || status=$?
expect "exit status after a signal" 143 $status
requireGone "$data" "$server"
requireGone "$data" "$command"

status=0
"$script" 2>/dev/null || status=$?
expect "exit status without a command" 2 $status
