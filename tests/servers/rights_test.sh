#!/usr/bin/env bash
# A login with just the rights that docs/servers.md names does all that the page says it can:
# tests/servers/rights_test.sh PROGRAM PAGE, beside a server (scripts/with-postgres.sh).
set -euo pipefail
program=$1
page=$2
client=$(ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -n 1)
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

setting() { sed -n "s/.*;$1={\{0,1\}\([^;}]*\).*/\1/p" <<< ";$QXIMPORTJOB_TEST_ODBC"; }
owner() {
  PGPASSWORD=$(setting PWD) "${client:+$client/}psql" -h "$(setting Server)" -p "$(setting Port)" -U "$(setting UID)" \
    -d "$(setting Database)" -q -v ON_ERROR_STOP=1 -c "$1"
}
quoted() { grep -o '`[^`]*`' <<< "$1" | tr -d '\140'; }
run() {
  status=0
  "$program" "$@" > "$folder/output" 2>&1 || status=$?
}
fail() {
  echo "$1 (exit status $status)"
  cat "$folder/output"
  exit 1
}

run init --demo
[ $status -eq 0 ] || fail "no database"
owner "Create Role clerk Login Password 'clerk'; Grant Usage On Schema public To clerk;
       Grant Select On All Tables In Schema public To clerk"
export QXIMPORTJOB_DB="odbc:$(sed -E 's/(UID|PWD)=[^;]*/\1=clerk/g' <<< "$QXIMPORTJOB_TEST_ODBC")"

for verb in "list --json" "check --json"; do
  run $verb
  [ $status -le 1 ] || fail "a login that only reads cannot $verb"
done
run process
[ $status -eq 4 ] && grep -q 'needs the right' "$folder/output" || fail "a login that only reads is not refused"

granted=0
while IFS='|' read -r _ tables rights _; do
  for table in $(quoted "$tables"); do
    owner "Grant $(quoted "$rights" | paste -sd,) On $(sed 's/.*/\L&/' <<< "$table") To clerk"
    granted=$((granted + 1))
  done
done < <(sed -n '/^| table | rights |/,/^$/p' "$page" | sed '1,2d;$d')
[ $granted -gt 10 ] || fail "the page has no table of rights"

echo '{"type":"Kunde","JobID":"NEU","Kundennummer":"77777","Bez1":"Neu","PLZ":"20095","Ort":"Hamburg"}' > "$folder/jobs.json"
run stage "$folder/jobs.json"
[ $status -eq 0 ] || fail "the login cannot stage"
run process
[ $status -eq 1 ] && grep -q '53 done' "$folder/output" || fail "the login cannot process"
run delete NEU
[ $status -eq 0 ] || fail "the login cannot delete"
