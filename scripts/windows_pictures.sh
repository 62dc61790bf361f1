#!/usr/bin/env bash
# Draws the pictures of docs/windows.md anew: scripts/windows_pictures.sh
# Opens the windows of scripts/windows-view.sh under Wine on the demo database, opens a job, processes all with F9, and
# takes a picture of each on a display of its own.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/bootstrap.sh build windows
[ -x build/windows/bin/qximportjob-view.exe ] || scripts/windows-view.sh
scripts/build.sh windows qximportjob
xvfb-run -a -s "-screen 0 1280x800x24" \
  scripts/with-wine.sh python3 tests/windows/view_pictures.py build/windows/bin docs/images
ls docs/images/windows-*.png
