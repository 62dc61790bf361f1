#!/usr/bin/env bash
# Builds the program for Windows, runs its tests under Wine and compares it with that of this system: scripts/windows.sh
# Needs Debian 12; what is missing is installed. The program is build/windows/bin/qximportjob.exe.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/bootstrap.sh build test windows
scripts/windows_libraries.sh
echo "Building the program of this system and that for Windows" >&2
scripts/build.sh dev qximportjob
scripts/build.sh windows

# Names with umlauts are lost in other locales.
export LC_ALL=C.UTF-8
wine_folder=/usr/lib/wine
state=$(mktemp -d)
export WINEPREFIX=$state/prefix WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml,winemenubuilder.exe="
mkdir "$WINEPREFIX"
cleanup() {
  "$wine_folder/wineserver64" -k 2>/dev/null || true
  rm -rf "$state"
}
trap cleanup EXIT

# The server stays: each program would start one of its own, which takes seconds and keeps the output of the tests
# open. Detached, since an interrupt of the terminal is meant for the tests.
setsid "$wine_folder/wineserver64" -p -f </dev/null >"$state/server.log" 2>&1 &
echo "Preparing Wine" >&2
if ! "$wine_folder/wine64" wineboot -i </dev/null >"$state/boot.log" 2>&1; then
  cat "$state/boot.log" >&2
  exit 1
fi
ctest --preset windows
