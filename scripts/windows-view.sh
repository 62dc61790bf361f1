#!/usr/bin/env bash
# Builds the windows for Windows: scripts/windows-view.sh
# A step of a release: the first time it builds the toolkit, which takes an hour of processor time
# (scripts/windows_qt.sh). The program is build/windows/bin/qximportjob-view.exe.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/bootstrap.sh build windows
toolkit=$(scripts/windows_qt.sh)
scripts/windows_libraries.sh
ln -sfn "$toolkit" build/windows-libraries/qt
echo "Building the windows" >&2
scripts/build.sh windows-view
