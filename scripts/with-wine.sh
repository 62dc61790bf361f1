#!/usr/bin/env bash
# Runs a command with a Wine of its own, made for it and removed after it: scripts/with-wine.sh COMMAND...
set -euo pipefail
[ $# -gt 0 ] || { echo "usage: scripts/with-wine.sh COMMAND..." >&2; exit 2; }
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
# open. Detached, since an interrupt of the terminal is meant for the command.
setsid "$wine_folder/wineserver64" -p -f </dev/null >"$state/server.log" 2>&1 &
echo "Preparing Wine" >&2
{
  "$wine_folder/wine64" wineboot -i
  # Windows has these fonts; without them boxes stand for letters.
  for font in "MS Shell Dlg" "MS Shell Dlg 2" "MS Sans Serif" "Segoe UI" Tahoma Arial; do
    "$wine_folder/wine64" reg add 'HKCU\Software\Wine\Fonts\Replacements' /v "$font" /d "DejaVu Sans" /f
  done
} </dev/null >"$state/boot.log" 2>&1 || { cat "$state/boot.log" >&2; exit 1; }
"$@"
