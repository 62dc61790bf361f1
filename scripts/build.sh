#!/usr/bin/env bash
# Configures and builds a preset: scripts/build.sh [PRESET] [TARGET...]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
preset=${1:-dev}
shift || true
targets=()
for target in "$@"; do targets+=(--target "$target"); done
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { cmake --preset "$preset" && cmake --build --preset "$preset" "${targets[@]}"; } >"$log" 2>&1; then
  tail -n 60 "$log" >&2
  exit 1
fi
