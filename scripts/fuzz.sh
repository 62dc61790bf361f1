#!/usr/bin/env bash
# Feeds each reader with random inputs: scripts/fuzz.sh [MINUTES for all of them together, default 1]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
minutes=${1:-1}
if ! [[ $minutes =~ ^[1-9][0-9]*$ ]]; then
  echo "usage: scripts/fuzz.sh [MINUTES]" >&2
  exit 2
fi
targets=(job_file code_tables stage_json local_settings setting_values select_parts german_numbers)
scripts/bootstrap.sh build fuzz
scripts/build.sh fuzz "${targets[@]/#/fuzz_}"

found=build/fuzz/found
mkdir -p "$found"
seconds=$((minutes * 60 / ${#targets[@]}))
failed=0
# Others may be at work on the machine: what counts is the time of the processor.
LC_NUMERIC=C
TIMEFORMAT='%U %S'
for target in "${targets[@]}"; do
  # New inputs are kept beside the build; those of the repository are only read.
  mkdir -p "build/fuzz/corpus/$target"
  log=$found/$target.log
  # Inputs of a few records find more in the same time than long ones.
  if cpu=$({ time build/fuzz/bin/fuzz_"$target" "build/fuzz/corpus/$target" "tests/fuzz/corpus/$target" \
    -dict="tests/fuzz/dictionaries/$target.dict" -max_total_time="$seconds" -max_len=4096 -timeout=10 \
    -rss_limit_mb=2048 -artifact_prefix="$found/$target-" -print_final_stats=1 >"$log" 2>&1; } 2>&1); then
    awk -v target="$target" -v cpu="$cpu" '
      $1 == "stat::number_of_executed_units:" { runs = $2 }
      $1 == "stat::average_exec_per_sec:" { rate = $2 }
      END {
        split(cpu, part, " ")
        printf "%-16s%10d inputs%8d a second%8d a second of processor time\n", target, runs, rate,
               runs / (part[1] + part[2])
      }' "$log"
  else
    failed=1
    tail -n 40 "$log" >&2
    echo "$target: the input that failed is in $found." >&2
  fi
done
exit "$failed"
