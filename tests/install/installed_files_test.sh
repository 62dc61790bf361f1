#!/usr/bin/env bash
# Installs the programs below a folder and lets the tools that read the other files judge them:
# installed_files_test.sh CMAKE BUILD PROGRAM
set -euo pipefail
cmake=$1 build=$2 program=$3
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export LC_ALL=C.UTF-8 HOME=$folder XDG_CONFIG_HOME=$folder/config XDG_DATA_HOME=$folder/data
for component in program view; do
  DESTDIR=$folder "$cmake" --install "$build" --prefix /usr --component $component >"$folder/log"
done
usr=$folder/usr

failures=0
complain() {
  echo "$1" >&2
  failures=$((failures + 1))
}

# Manual pages: nothing to warn of, and every document that one names is there.
for page in "$usr"/share/man/man?/*; do
  warnings=$(MANROFFSEQ='' MANWIDTH=80 man --warnings -E UTF-8 -l -Tutf8 -Z "$page" 2>&1 >/dev/null)
  [ -z "$warnings" ] || complain "$page: $warnings"
  text=$(MANWIDTH=80 man -l "$page")
  for heading in FILES ENVIRONMENT EXAMPLES 'SEE ALSO'; do
    grep -qx "$heading" <<<"$text" || complain "$page: no section $heading"
  done
  for document in $(grep -oE '\b[a-z-]+\.md\b' <<<"$text" | sort -u); do
    [ -e "$usr/share/doc/qximportjob/$document" ] || complain "$page: $document is not installed"
  done
done
grep -q 'the run was stopped before its end' <<<"$(MANWIDTH=200 man -l "$usr/share/man/man1/qximportjob.1")" ||
  complain 'the exit statuses are missing'

# The unit's program is where it says in a package only.
units=$usr/lib/systemd/system
sed -i "s|/usr/bin/qximportjob|$program|" "$units/qximportjob.service"
cp "$usr/share/doc/qximportjob/examples/"*.service "$units"
sed -i "s|/usr/bin/qximportjob|$program|" "$units/qximportjob-watch.service"
for unit in qximportjob.service qximportjob.timer qximportjob-failure@x.service qximportjob-watch.service; do
  found=$(systemd-analyze verify --man=no "$units/$unit" 2>&1) || complain "$unit: $found"
  # What other units of this machine lack is not ours.
  ! grep -F qximportjob <<<"$found" || complain "$unit: $found"
done

if [ -e "$usr/share/applications" ]; then
  found=$(desktop-file-validate "$usr"/share/applications/*.desktop 2>&1) || true
  [ -z "$found" ] || complain "$found"
  # The licence is the owner's decision. Nothing else may be wrong.
  found=$(appstreamcli validate --no-net --no-color "$usr"/share/metainfo/*.xml 2>&1 | grep -E '^[EW]:' || true)
  [ "$found" = 'E: local.qximportjob.view:~: metadata-license-missing' ] || complain "$found"
  # What an export begins with is what the type of the files is known by.
  "$program" --db "$folder/märz.db" init >/dev/null
  "$program" --db "$folder/märz.db" export "$folder/jobs.edi" >/dev/null
  magic=$(sed -n 's/.*<match.* value="&quot;\(.*\)"\/>/"\1/p' "$usr/share/mime/packages/qximportjob.xml")
  [ "$(head -c ${#magic} "$folder/jobs.edi")" = "$magic" ] || complain "an export does not begin with $magic"
fi
[ $failures -eq 0 ]
