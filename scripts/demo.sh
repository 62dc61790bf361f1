#!/usr/bin/env bash
# Builds the program and takes jobs of every kind through their outcomes: scripts/demo.sh
# scripts/with-postgres.sh scripts/demo.sh does so on a server.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# PROGRAM=... takes one that is there already.
program=${PROGRAM:-build/release/bin/qximportjob}
if [ -z "${PROGRAM:-}" ]; then
  scripts/bootstrap.sh build
  [ -x "$program" ] || echo "Building; the first time takes a few minutes..." >&2
  scripts/build.sh release qximportjob
fi

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
# Nothing of the user's own installation is read or written.
export XDG_CONFIG_HOME=$folder/config XDG_DATA_HOME=$folder/data
first=$folder/demo.db second=$folder/company.db
if [ -n "${QXIMPORTJOB_TEST_ODBC2:-}" ]; then
  first=odbc:$QXIMPORTJOB_TEST_ODBC second=odbc:$QXIMPORTJOB_TEST_ODBC2
fi
export QXIMPORTJOB_DB=$first
demo=src/resources/demo

tell() { printf '\n\033[1m# %s\033[0m\n' "$*" | if [ -t 1 ]; then cat; else sed 's/\x1b\[[0-9]*m//g'; fi; }

# Shows a command and runs it. Jobs with findings end it with 1, which belongs to the demonstration.
run() {
  local status=0
  echo "\$ qximportjob $*"
  "$program" "$@" || status=$?
  [ $status -eq 0 ] || echo "(exit status $status)"
  [ $status -le 1 ] || exit $status
}

tell 'A new database. Codes that are not known yet may be created by a run.'
run init
for key in KundenKundengruppe KundenVertreter KundenZahlungsart KundenBankleitzahl; do
  run settings set ImportJob2 $key 1
done

tell 'Three new customers arrive and are written, with their codes.'
run stage $demo/first_customers.json
run process

tell 'From now on new reps are refused, and every job is checked before it is written.'
run settings set ImportJob2 KundenVertreter 0
run settings set ImportJob2 AutomatischVerarbeiten 1
run settings set ImportJob2 KundeAdressProof 1

tell 'Six more jobs: what does not fit?'
run stage $demo/next_customers.json
run list --state waiting
run check

tell 'The run writes what fits and parks the rest with the reason.'
run process
run list --state warning --state error
run show DEMO-16

tell 'A clerk has looked at the parked jobs and releases three: the next run takes them without the check.'
run release DEMO-13 DEMO-14 DEMO-15
run process

tell 'Group NEU was created and the new address written; rep 999 may not be created, so DEMO-15 stays an error.'
run list

tell 'The protocol of the day has one line for every attempt.'
run protocol

tell 'A second database holds an invented company. Its own jobs are done first, without a list.'
export QXIMPORTJOB_DB=$second
run init --demo
echo '$ qximportjob process | tail -n 1'
{ "$program" process 2>/dev/null || true; } | tail -n 1

tell 'Contracts and orders: one order is for a customer who arrives in the same file, one names an unknown article.'
run stage $demo/orders.json
run process

tell 'What was written: order number, prices and the reason of each refusal.'
for job in DEMO-22 DEMO-24 DEMO-27; do run show $job; done
