#!/usr/bin/env bash
# Builds the program and the automation component for Windows, tests them under Wine, and compares the program with that
# of this system: scripts/windows.sh
# Needs Debian 12; what is missing is installed. Results: build/windows/bin/qximportjob.exe and QXImportJob.dll,
# build/windows32/bin/QXImportJob.dll.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/bootstrap.sh build test windows
scripts/windows_libraries.sh
echo "Building the program of this system and that for Windows" >&2
scripts/build.sh dev qximportjob
scripts/with-wine.sh bash -euc '
  scripts/build.sh windows
  echo "Building the component for 32 bits" >&2
  scripts/build.sh windows32
  ctest --preset windows32
  ctest --preset windows'
