#!/usr/bin/env bash
# Runs a command beside a PostgreSQL server of its own: scripts/with-postgres.sh [--fast] COMMAND...
# The command finds the connection string in $QXIMPORTJOB_TEST_ODBC (and in $QXIMPORTJOB_DB, with "odbc:" before it),
# that of a second database in $QXIMPORTJOB_TEST_ODBC2, and the server's folder in $QXIMPORTJOB_TEST_POSTGRES, where
# "start" starts a server that was stopped. Server and folder are gone when the command ends, also by a signal; the
# exit status is that of the command.
# --fast leaves out the writing through to the disk: after a crash of the machine the data would be lost.
set -euo pipefail

fast=off
if [ "${1:-}" = --fast ]; then
  fast=on
  shift
fi
if [ $# -eq 0 ]; then
  echo "usage: scripts/with-postgres.sh [--fast] COMMAND..." >&2
  exit 2
fi

# Debian keeps the server's programs out of the search path, where another version may be found first.
programs=$(ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -n 1)
[ -n "$programs" ] || programs=$(dirname "$(command -v initdb || true)")
if [ ! -x "$programs/initdb" ]; then
  echo "PostgreSQL is missing: scripts/bootstrap.sh test installs it." >&2
  exit 1
fi

# The server refuses to run as root.
account=()
if [ "$(id -u)" -eq 0 ]; then
  user=postgres
  id -u $user >/dev/null 2>&1 || user=nobody
  account=(setpriv "--reuid=$user" "--regid=$(id -g $user)" --clear-groups)
fi

# The path of a socket may have 107 bytes at most.
parent=${TMPDIR:-/tmp}
[ ${#parent} -le 60 ] || parent=/tmp
folder=$(mktemp -d "$parent/qx-postgres-XXXXXX")
server=''

serverProcess() { head -n 1 "$folder/data/postmaster.pid" 2>/dev/null || true; }

finish() {
  trap '' INT TERM HUP
  # The command may have started the server anew, so its own file names the process.
  local process
  process=$(serverProcess)
  for process in $process $server; do
    kill -QUIT "$process" 2>/dev/null || continue
    for _ in $(seq 200); do
      kill -0 "$process" 2>/dev/null || break
      sleep 0.02
    done
    kill -KILL "$process" 2>/dev/null || true
  done
  rm -rf "$folder"
}
trap finish EXIT
trap 'exit 130' INT
trap 'exit 143' TERM
trap 'exit 129' HUP

fail() {
  echo "The PostgreSQL server cannot be started:" >&2
  tail -n 20 "$folder/$1" >&2
  exit 1
}

[ ${#account[@]} -eq 0 ] || chown "$user" "$folder"
password=$(od -An -N 12 -tx1 /dev/urandom | tr -d ' \n')
# Only whoever may enter the folder reaches the socket in it, so nobody is asked there.
(cd "$folder" && "${account[@]}" "$programs/initdb" --pgdata=data --username=postgres --auth-local=trust \
  --auth-host=scram-sha-256 --encoding=UTF8 --locale=C --no-sync --no-instructions) >"$folder/initdb.log" 2>&1 || fail initdb.log
{
  echo "unix_socket_directories = '$folder'"
  echo "listen_addresses = '127.0.0.1'"
  echo "max_connections = 50"
  echo "log_destination = 'stderr'"
  if [ $fast = on ]; then
    echo "fsync = off"
    echo "synchronous_commit = off"
    echo "full_page_writes = off"
  fi
} >>"$folder/data/postgresql.conf"

# The server dies with the shell that started it, so that nothing is left when this one is killed outright.
cat >"$folder/start" <<START
#!/usr/bin/env bash
cd "$folder" && exec ${account[*]:-setpriv} "\$@" "$programs/postgres" -D "$folder/data" -p "\$(cat "$folder/port")" >>"$folder/server.log" 2>&1
START
chmod 755 "$folder/start"

ask() { "${account[@]}" "$programs/psql" -X -q -h "$folder" -p "$port" -U postgres -d "$1" -v ON_ERROR_STOP=1 -c "$2"; }

# A port may be taken in the moment after it was found free, so the next one is tried.
for _ in $(seq 20); do
  port=$((20000 + RANDOM % 12000))
  echo $port >"$folder/port"
  : >"$folder/server.log"
  "$folder/start" --pdeathsig=QUIT </dev/null &
  server=$!
  while kill -0 $server 2>/dev/null && ! "$programs/pg_isready" -q -h "$folder" -p $port 2>/dev/null; do sleep 0.02; done
  kill -0 $server 2>/dev/null && break
  grep -q 'Address already in use' "$folder/server.log" || fail server.log
  server=''
done
[ -n "$server" ] || fail server.log

# The user of the tests may create databases and other users, but is not almighty: rights are tested too.
ask postgres "Create Role qx Login CreateDB CreateRole Password '$password'" >"$folder/setup.log" 2>&1 &&
  ask postgres "Create Database qx Owner qx" >>"$folder/setup.log" 2>&1 &&
  ask postgres "Create Database qx2 Owner qx" >>"$folder/setup.log" 2>&1 || fail setup.log

export QXIMPORTJOB_TEST_ODBC="Driver={PostgreSQL Unicode};Server=127.0.0.1;Port=$port;Database=qx;UID=qx;PWD=$password"
export QXIMPORTJOB_TEST_ODBC2="${QXIMPORTJOB_TEST_ODBC/Database=qx/Database=qx2}"
export QXIMPORTJOB_DB="odbc:$QXIMPORTJOB_TEST_ODBC"
export QXIMPORTJOB_TEST_POSTGRES="$folder"

# In the background, so that a signal is answered at once; with the standard input and signals of a foreground command.
env --default-signal=INT,QUIT "$@" <&0 &
command=$!
trap 'kill -INT $command 2>/dev/null; wait $command || true; exit 130' INT
trap 'kill -TERM $command 2>/dev/null; wait $command || true; exit 143' TERM
trap 'kill -HUP $command 2>/dev/null; wait $command || true; exit 129' HUP
status=0
wait $command || status=$?
exit $status
