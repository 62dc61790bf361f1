#!/usr/bin/env bash
# Packs what is installed on Windows into build/windows/qximportjob-VERSION-windows.zip and tries it under Wine:
# scripts/windows_package.sh [--without-view]
# Builds what is missing: programs, component for 64 and 32 bits, and, unless left out, the windows with their toolkit,
# which takes an hour once.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
view=1
case "$*" in
'') ;;
--without-view) view=0 ;;
*) echo "usage: scripts/windows_package.sh [--without-view]" >&2; exit 2 ;;
esac
scripts/bootstrap.sh build windows
[ $view -eq 0 ] || scripts/windows-view.sh
scripts/windows_libraries.sh
scripts/with-wine.sh bash -euc '
  scripts/build.sh windows qximportjob QXImportJob script_host
  scripts/build.sh windows32'

version=$(sed -n 's/^project(qximportjob VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
name=qximportjob-$version-windows
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
folder=$work/$name
mkdir -p "$folder/Beispiele"
strip() { x86_64-w64-mingw32-strip -o "$folder/$2" "$1"; }
strip build/windows/bin/qximportjob.exe qximportjob.exe
[ $view -eq 0 ] || strip build/windows/bin/qximportjob-view.exe qximportjob-view.exe
strip build/windows/bin/QXImportJob.dll QXImportJob.dll
i686-w64-mingw32-strip -o "$folder/QXImportJob32.dll" build/windows32/bin/QXImportJob.dll
cp build/windows/src/com/QXImportJob.tlb "$folder"

# Texts as Windows reads them: lines end with CR LF; scripts and macros are in its own code page.
crlf() { sed 's/$/\r/'; }
{ printf '\xef\xbb\xbf' && sed "s/@version@/$version/" packaging/windows/Liesmich.txt | crlf; } >"$folder/Liesmich.txt"
for file in registrieren.cmd abmelden.cmd; do crlf <"packaging/windows/$file" >"$folder/$file"; done
crlf <packaging/windows/KundenImportieren.bas | iconv -t cp1252 >"$folder/Beispiele/KundenImportieren.bas"
# The script of the tests, in the words of the system's own host.
sed 's/Host\.Echo/WScript.Echo/; s/Host\.Connect/WScript.ConnectObject/; s/Host\.Argument(/WScript.Arguments(/' \
  tests/com/stage_and_run.vbs | crlf | iconv -t cp1252 >"$folder/Beispiele/Beispiel.vbs"

zip=$PWD/build/windows/$name.zip
rm -f "$zip"
(cd "$work" && zip -q -r -X "$zip" "$name")
scripts/with-wine.sh python3 tests/windows/package.py "$zip" build/windows/bin/script_host.exe
echo "$zip"
