#!/usr/bin/env bash
# Feeds each reader with random inputs for a while: scripts/fuzz.sh [SECONDS per reader, default 30]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
seconds=${1:-30}
if ! [[ $seconds =~ ^[1-9][0-9]*$ ]]; then
  echo "usage: scripts/fuzz.sh [SECONDS]" >&2
  exit 2
fi
scripts/bootstrap.sh build fuzz
targets=(job_file code_tables stage_json)
scripts/build.sh fuzz "${targets[@]/#/fuzz_}"

found=build/fuzz/found
mkdir -p "$found"
for target in "${targets[@]}"; do
  # New inputs are kept beside the build; those of the repository are only read.
  mkdir -p "build/fuzz/corpus/$target"
  echo "fuzz_$target, $seconds seconds" >&2
  build/fuzz/bin/fuzz_"$target" "build/fuzz/corpus/$target" "tests/fuzz/corpus/$target" \
    -max_total_time="$seconds" -max_len=20000 -timeout=25 -rss_limit_mb=2048 -artifact_prefix="$found/" \
    -print_final_stats=1 2>"$found/$target.log" || {
    tail -n 40 "$found/$target.log" >&2
    echo "The input that failed is in $found." >&2
    exit 1
  }
  grep -E 'number_of_executed_units|new_units_added' "$found/$target.log"
done
