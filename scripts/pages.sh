#!/usr/bin/env bash
# Types the commands of README.md and docs/ and compares what they print: scripts/pages.sh [--renew]
# With --renew the pages are rewritten to what the program prints. PRESET=release takes another build than dev.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
preset=${PRESET:-dev}
scripts/build.sh "$preset" qximportjob page_lists
bin=build/$preset/bin
exec tests/docs/pages.py "$bin/qximportjob" "$bin/page_lists" "$@"
