#!/usr/bin/env bash
# Kills processing runs at random moments, many times, and checks every result: scripts/kill_test.sh [KILLS]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
kills=${1:-100}
if ! [[ $kills =~ ^[1-9][0-9]*$ ]]; then
  echo "usage: scripts/kill_test.sh [KILLS]" >&2
  exit 2
fi
scripts/bootstrap.sh build test
scripts/build.sh release qximportjob
tests/kill/kill_runs.sh build/release/bin/qximportjob "$kills"
