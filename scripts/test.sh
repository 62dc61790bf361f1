#!/usr/bin/env bash
# Installs what is missing, builds and runs every test: scripts/test.sh [PRESET]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
preset=${1:-dev}
scripts/bootstrap.sh build test
command -v npm >/dev/null || scripts/bootstrap.sh npm
scripts/build.sh "$preset"
ctest --preset "$preset"
