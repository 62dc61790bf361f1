#!/usr/bin/env bash
# Kills processing runs at random moments and checks that every job is still written exactly once:
# kill_runs.sh BINARY KILLS
set -euo pipefail
if [ $# -ne 2 ]; then
  echo "usage: kill_runs.sh BINARY KILLS" >&2
  exit 2
fi
program=$1
wanted=$2
jobs=3000
orders=$((jobs / 5))
contracts=$((jobs / 5))
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export HOME=$folder XDG_CONFIG_HOME=$folder/config XDG_DATA_HOME=$folder/data

fail() {
  echo "FAILED after $kills kills: $*" >&2
  exit 1
}

# Customers that bring addresses and codes that the run has to create; every fifth has an order, every fifth a
# contract whose values stand in a position.
make_jobs() {
  awk -v jobs=$jobs 'BEGIN {
    for (i = 1; i <= jobs; i++) {
      printf "{\"type\":\"Kunde\",\"JobID\":\"KILL-%06d\",\"Kundennummer\":\"%d\",\"Eingangsdatum\":\"24.11.2026\"",
             i, 100000 + (i * 7919) % 899981
      printf ",\"Bez1\":\"Kunde %d\",\"Ort\":\"Celle\",\"Kundengruppe\":\"G%d\",\"Vertreter1\":\"%d\"",
             i, i % 40, 1 + int(i / 100)
      if (i % 3 == 0) printf ",\"VS_AdrNr\":\"1\",\"VS_Bez1\":\"Lager %d\"", i
      print "}"
      number = 100000 + (i * 7919) % 899981
      if (i % 5 == 0) {
        printf "{\"type\":\"Auftrag\",\"JobID\":\"ORDER-%06d\",\"Kundennummer\":\"%d\",\"Positionen\":[", i, number
        print "{\"Positionsnummer\":1,\"Artikelnummer\":\"A1\",\"Menge\":2},{\"Positionsnummer\":2,\"Artikelnummer\":\"A1\",\"Menge\":1}]}"
      }
      if (i % 5 == 1) {
        printf "{\"type\":\"Vertrag\",\"JobID\":\"CONTRACT-%06d\",\"Kundennummer\":\"%d\",\"Vertragsnummer\":\"V%d\"", i, number, i
        print ",\"Positionen\":[{\"Artikelnummer\":\"G1\",\"Vertragsart\":\"WV\",\"Menge\":1,\"Preis\":9.5}]}"
      }
    }
  }'
}

prepare() {
  make_jobs >"$folder/jobs.json"
  "$program" --db "$folder/start.db" init >/dev/null
  for option in KundenKundengruppe KundenVertreter; do
    "$program" --db "$folder/start.db" settings set ImportJob2 "$option" 1 >/dev/null
  done
  sqlite3 "$folder/start.db" "
    INSERT INTO Artikelstamm (Artikelnummer, Bez, Mengeneinheit, MwSt_KZ, WertJN) VALUES ('A1', 'Artikel', 'ST', 'V', 1);
    INSERT INTO Verkaufspreise (Preisliste, Kundennummer, Artikelnummer, Mengeneinheit, Menge, GueltigAb, Preis, Preiseinheit)
      VALUES ('', '', 'A1', 'ST', 1, '', 10, 1);
    INSERT INTO Vertragsarten (Vertragsart, Kurztext) VALUES ('WV', 'Wartung');
    INSERT INTO Vertragsgegenstände (VertrGegenstandsNr, Bez) VALUES ('G1', 'Anlage');
    INSERT INTO VertragsGegenständePos (VertrGegenstandsNr, Vertragsart) VALUES ('G1', 'WV')"
  "$program" --db "$folder/start.db" stage "$folder/jobs.json" >/dev/null
}

# Copies a database; what a killed program left beside it comes along.
copy() {
  rm -f "$2" "$2-wal" "$2-shm"
  cp "$1" "$2"
  if [ -e "$1-wal" ]; then cp "$1-wal" "$2-wal"; fi
}

# Runs a query whose result must be the given text.
expect() {
  local found
  found=$(sqlite3 "$1" "$3")
  [ "$found" = "$2" ] || fail "expected '$2', found '$found': $3"
}

# Whatever the moment of the kill: a job is written, logged and marked, or it is none of these.
check_consistent() {
  expect "$1" ok 'PRAGMA integrity_check'
  expect "$1" '' 'SELECT Kundennummer FROM ImportKopf WHERE JobType = 13 EXCEPT SELECT Kundennummer FROM Kundenstamm'
  expect "$1" '' 'SELECT Kundennummer FROM Kundenstamm EXCEPT SELECT Kundennummer FROM ImportKopf WHERE JobType = 13'
  expect "$1" '' 'SELECT Text0, Text1 FROM Protokollpositionen GROUP BY Text0, Text1 HAVING count(*) <> 1'
  expect "$1" '' "SELECT Text1 FROM Protokollpositionen WHERE Text0 = 'Kunden' EXCEPT SELECT Kundennummer FROM Kundenstamm"
  expect "$1" '' "SELECT Kundennummer FROM Kundenstamm EXCEPT SELECT Text1 FROM Protokollpositionen WHERE Text0 = 'Kunden'"
  expect "$1" 0 "SELECT count(*) FROM ImportKopf
    WHERE JobType NOT IN (10, 13, 20, 23, 30, 33) OR coalesce(Fehlertext, '') <> ''"
  # A job written twice would be logged as a change the second time.
  expect "$1" 0 "SELECT count(*) FROM Protokollpositionen
    WHERE Text2 <> 'Erledigt' OR (Text0 = 'Kunden' AND coalesce(Text8, '') <> '1')"
  check_orders "$1"
  check_contracts "$1"
  check_feed "$1"
}

# Header, both lines, index entry, number and protocol line belong together, and no number is missing.
check_orders() {
  local done
  done=$(sqlite3 "$1" 'SELECT count(*) FROM ImportKopf WHERE JobType = 33')
  expect "$1" "$done" 'SELECT count(*) FROM Auftragskopf WHERE Gesamtbrutto = 35.7'
  expect "$1" $((done * 2)) 'SELECT count(*) FROM Auftragspos'
  expect "$1" '' 'SELECT Auftragsnummer FROM Auftragspos GROUP BY Auftragsnummer HAVING count(*) <> 2'
  expect "$1" "$done" "SELECT count(DISTINCT Belegnummer) FROM Belegindex"
  expect "$1" "$done" "SELECT aktuellerWert FROM Nummernkreise WHERE NSchl = 'AB'"
  expect "$1" "$done" 'SELECT coalesce(max(Auftragsnummer), 0) FROM Auftragskopf'
  expect "$1" "$done" "SELECT count(*) FROM Protokollpositionen WHERE Text0 = 'Auftrag'"
}

# Each done job is told as done once, and no number is missing.
check_feed() {
  expect "$1" '' 'SELECT JobID FROM Zustandswechsel GROUP BY JobID, JobType HAVING count(*) <> 1'
  expect "$1" '' 'SELECT JobID FROM ImportKopf WHERE JobType % 10 = 3 EXCEPT SELECT JobID FROM Zustandswechsel'
  expect "$1" '' 'SELECT JobID FROM Zustandswechsel EXCEPT SELECT JobID FROM ImportKopf WHERE JobType % 10 = 3'
  expect "$1" 1 "SELECT (SELECT coalesce(max(Folge), 0) FROM Zustandswechsel) = (SELECT count(*) FROM Zustandswechsel)
    AND (SELECT count(*) FROM Zustandswechsel) = coalesce((SELECT Stand FROM Zaehlerstaende WHERE Zaehler =
    'Zustandswechsel'), 0)"
}

# A position is in its table or in its header, never in both and never lost.
check_contracts() {
  local done
  done=$(sqlite3 "$1" 'SELECT count(*) FROM ImportKopf WHERE JobType = 23')
  expect "$1" "$done" "SELECT count(*) FROM Verträge WHERE VertrGegenstandsNr = 'G1' AND Betrag = 9.5"
  expect "$1" "$done" "SELECT count(*) FROM Protokollpositionen WHERE Text0 = 'Vertrag'"
  expect "$1" $contracts "SELECT count(*) FROM ImportKopf LEFT JOIN ImportPos USING (JobID) WHERE
    ImportKopf.JobID LIKE 'CONTRACT%' AND (ImportPos.ChildID IS NULL) = (ImportKopf.Artikelnummer IS 'G1')"
}

check_complete() {
  check_consistent "$1"
  expect "$1" $jobs 'SELECT count(*) FROM ImportKopf WHERE JobType = 13'
  expect "$1" $jobs 'SELECT count(DISTINCT Kundennummer) FROM Kundenstamm'
  expect "$1" $((jobs + orders + contracts)) 'SELECT count(*) FROM Protokollpositionen'
  expect "$1" $orders 'SELECT count(*) FROM ImportKopf WHERE JobType = 33'
  expect "$1" $contracts 'SELECT count(*) FROM ImportKopf WHERE JobType = 23'
  expect "$1" $jobs 'SELECT count(*) FROM Adressindex'
  expect "$1" $((jobs / 3)) 'SELECT count(*) FROM Adressenstamm'
  expect "$1" 40 'SELECT count(*) FROM Kundengruppen'
  expect "$1" 31 'SELECT count(*) FROM Vertreter'
  expect "$1" 0 'SELECT count(*) FROM LockControl'
}

process() { "$program" --db "$folder/run.db" --json process >"$folder/out" 2>"$folder/messages"; }

milliseconds() { echo $(($(date +%s%N) / 1000000)); }

random_delay() {
  local most=$1
  local delay=$(((RANDOM * 32768 + RANDOM) % (most + 1)))
  printf '%d.%03d' $((delay / 1000)) $((delay % 1000))
}

# Starts a run and kills it after a while; false when it had ended before.
run_and_kill() {
  local most=$1 status=0
  "$program" --db "$folder/run.db" --json process >"$folder/out" 2>"$folder/messages" &
  local run=$!
  sleep "$(random_delay "$most")"
  kill -9 "$run" 2>/dev/null || true
  wait "$run" 2>/dev/null || status=$?
  case $status in
  137) return 0 ;;
  0) return 1 ;;
  *) fail "a run ended with status $status: $(cat "$folder/messages")" ;;
  esac
}

kills=0
halfway=0
rounds=0
prepare
copy "$folder/start.db" "$folder/run.db"
begun=$(milliseconds)
process || fail "an undisturbed run ended with status $?: $(cat "$folder/messages")"
whole=$(($(milliseconds) - begun))
check_complete "$folder/run.db"

# The first kills of a round may come at any moment of a whole run, later ones find less and less to do.
while [ "$kills" -lt "$wanted" ]; do
  copy "$folder/start.db" "$folder/run.db"
  rounds=$((rounds + 1))
  for attempt in 1 2 3 4 5 6; do
    run_and_kill $((whole / attempt)) || break
    kills=$((kills + 1))
    copy "$folder/run.db" "$folder/look.db"
    check_consistent "$folder/look.db"
    waiting=$(sqlite3 "$folder/look.db" 'SELECT count(*) FROM ImportKopf WHERE JobType IN (10, 20, 30)')
    [ "$waiting" -eq 0 ] || [ "$waiting" -eq $((jobs + orders + contracts)) ] || halfway=$((halfway + 1))
    [ "$kills" -lt "$wanted" ] || break
  done
  process || fail "the run after the kills ended with status $?: $(cat "$folder/messages")"
  check_complete "$folder/run.db"
done
[ "$halfway" -gt 0 ] || fail "no kill met a run at work, so nothing was tested"
echo "$kills runs killed in $rounds rounds over $jobs jobs, $halfway of them halfway:" \
  "every job written once and logged once."
