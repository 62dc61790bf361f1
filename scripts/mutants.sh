#!/usr/bin/env bash
# Makes small changes to a copy of the code, one at a time, and tells which of them no test notices:
# scripts/mutants.sh [--sample N [--seed SEED]] [--only PART_OF_LINE] [--survivors N] [--jobs N] [--check]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
export LC_ALL=C.UTF-8
list=tests/mutants/mutants.txt
folder=build/mutants
# Seconds that a suite may take without any change.
readonly suite_limit=600

usage() {
  echo "usage: scripts/mutants.sh [--sample N [--seed SEED]] [--only PART_OF_LINE] [--survivors N] [--jobs N] [--check]" >&2
  exit 2
}
sample=0 seed=$(date +%j) only="" jobs=1 tolerated=0 check_only=0
while [ $# -gt 0 ]; do
  case $1 in
  --sample | --seed | --only | --survivors | --jobs) [ $# -ge 2 ] || usage ;;&
  --sample) sample=$2 && shift 2 ;;
  --seed) seed=$2 && shift 2 ;;
  --only) only=$2 && shift 2 ;;
  --survivors) tolerated=$2 && shift 2 ;;
  --jobs) jobs=$2 && shift 2 ;;
  --check) check_only=1 && shift ;;
  *) usage ;;
  esac
done
for number in "$sample" "$seed" "$tolerated" "$jobs"; do [[ $number =~ ^[0-9]+$ ]] || usage; done
# A day of the year may begin with a zero.
seed=$((10#$seed)) sample=$((10#$sample)) tolerated=$((10#$tolerated)) jobs=$((10#$jobs))
[ "$jobs" -gt 0 ] || usage

# The suites that link a file of this folder, the likely and quick ones first.
suites_of() {
  case $1 in
  src/model/*) echo model platform store engine golden ui erp rules cli ;;
  src/platform/*) echo platform database store engine golden rules cli ;;
  src/settings/*) echo settings rules engine golden ui cli ;;
  src/rules/*) echo rules engine golden ui store cli ;;
  src/store/*) echo store engine golden cli ui ;;
  src/engine/*) echo engine golden cli ui ;;
  src/automation/*) echo automation ;;
  src/erp/*) echo erp rules engine golden ui cli ;;
  src/adapters/local_settings/*) echo local_settings cli ;;
  src/adapters/sql/*) echo sql database store engine golden erp cli ;;
  src/adapters/sqlite/*) echo sqlite database store engine golden erp cli ;;
  src/adapters/system/*) echo system cli ;;
  src/convert/*) echo cli ;;
  src/cli/* | src/program/* | src/composition/*) echo cli golden ;;
  src/ui/*) echo ui ;;
  esac
}

# Splits a line of the list into file, before, after and reason.
split() {
  local rest=$1 part
  # An empty end is a step left out.
  [[ $rest != *' |' ]] || rest+=' '
  fields=()
  while [[ $rest == *' | '* ]]; do
    part=${rest%%' | '*}
    fields+=("$part")
    rest=${rest#*' | '}
  done
  fields+=("$rest")
  file=${fields[0]:-} before=${fields[1]:-} after=${fields[2]:-} reason=${fields[3]:-}
}

# The text of a file with the change, in `changed`; false unless what stands before occurs exactly once.
change() {
  local LC_ALL=C text head tail
  [ -f "$1" ] && [ -n "$2" ] || return 1
  # The dot keeps the line ends at the end of the file.
  text=$(cat "$1" && echo .)
  text=${text%.}
  head=${text%%"$2"*}
  [ "$head" != "$text" ] || return 1
  tail=${text#*"$2"}
  [[ $tail != *"$2"* ]] || return 1
  changed=$head$3$tail
}

mutants=()
stale=0
while IFS= read -r line; do
  case $line in '' | '#'*) continue ;; esac
  split "$line"
  if [ ${#fields[@]} -lt 3 ] || [ ${#fields[@]} -gt 4 ] || [ -z "$(suites_of "$file")" ]; then
    echo "not understood: $line" >&2
    stale=1
  elif [ "$before" = "$after" ] || ! change "$file" "$before" "$after"; then
    echo "what stands before is not found exactly once: $line" >&2
    stale=1
  elif [[ -z $only || $line == *"$only"* ]]; then
    mutants+=("$line")
  fi
done <"$list"
[ $stale -eq 0 ] || exit 2
count=${#mutants[@]}
if [ "$sample" -gt 0 ] && [ "$sample" -lt "$count" ]; then
  # Spread over the list, and another place of every stretch each day.
  chosen=()
  for ((i = 0; i < sample; ++i)); do
    from=$((i * count / sample)) to=$(((i + 1) * count / sample))
    chosen+=("${mutants[from + (seed * 7 + i * 3) % (to - from)]}")
  done
  mutants=("${chosen[@]}")
fi
echo "${#mutants[@]} of $count changes"
[ $check_only -eq 0 ] || exit 0

scripts/bootstrap.sh build test

# Nothing is optimised, and the files of the program stand alone, so that a change is soon built.
prepare() {
  local copy=$1 file
  mkdir -p "$copy"
  while IFS= read -r -d '' file; do
    [ -f "$file" ] || continue
    if cmp -s "$file" "$copy/$file"; then continue; fi
    mkdir -p "$copy/$(dirname "$file")"
    cp "$file" "$copy/$file"
  done < <(git ls-files -z --cached --others --exclude-standard)
  local options=(-DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O0 -DCMAKE_CXX_FLAGS=-w
    -DQXIMPORTJOB_WINDOWS=OFF -DQXIMPORTJOB_BENCH=OFF -DQXIMPORTJOB_JOIN_TESTS=ON)
  if command -v ld.lld >/dev/null; then options+=(-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld); fi
  if ! cmake -S "$copy" -B "$copy/build" -G Ninja "${options[@]}" >"$copy/build.log" 2>&1; then
    tail -n 40 "$copy/build.log" >&2
    return 1
  fi
  : >"$copy/verdicts"
}

exists() { ninja -C "$1/build" -t query "test_$2" >/dev/null 2>&1; }

builds() { ninja -C "$1/build" "test_$2" >"$1/build.log" 2>&1; }

# No server is at hand for the tests that need one. Processor time counts, so that a busy machine makes no suite too slow; one that only waits is ended as well.
passes() {
  (cd "$1" && ulimit -t "${limit[$2]:-$suite_limit}" &&
    timeout $((2 * suite_limit)) "build/bin/test_$2" --gtest_brief=1 --gtest_fail_fast --gtest_filter='-Server*') \
    >"$1/test.log" 2>&1 </dev/null
}

# A suite says something of a change only when it passes without it.
declare -A passing
# A suite that takes far longer than it did hangs, and has noticed the change as well.
declare -A limit
require() {
  local copy=$1 suite=$2
  [ -z "${passing[$suite]:-}" ] || return 0
  if ! builds "$copy" "$suite"; then
    tail -n 40 "$copy/build.log" >&2
    return 1
  fi
  local began=$SECONDS
  if ! passes "$copy" "$suite"; then
    echo "test_$suite fails without any change:" >&2
    tail -n 20 "$copy/test.log" >&2
    return 1
  fi
  passing[$suite]=yes
  limit[$suite]=$((60 + 5 * (SECONDS - began)))
}

# What became of one change: killed by a suite, survived, or broken.
try() {
  local copy=$1 suite
  cp "$copy/$file" "$copy/unchanged"
  change "$copy/$file" "$before" "$after"
  printf '%s' "$changed" >"$copy/changed"
  verdict=survived
  for suite in $(suites_of "$file"); do
    exists "$copy" "$suite" || continue
    if [ -z "${passing[$suite]:-}" ]; then
      cmp -s "$copy/unchanged" "$copy/$file" || cp "$copy/unchanged" "$copy/$file"
      require "$copy" "$suite" || return 1
    fi
    cmp -s "$copy/changed" "$copy/$file" || cp "$copy/changed" "$copy/$file"
    if ! builds "$copy" "$suite"; then
      verdict=broken
      break
    fi
    local status=0
    passes "$copy" "$suite" || status=$?
    if [ $status -ne 0 ]; then
      verdict="killed by test_$suite"
      # What timeout ends with, and the signal of used up processor time.
      [ $status -ne 124 ] && [ $status -ne $((128 + 24)) ] || verdict+=", which did not end"
      break
    fi
  done
  cp "$copy/unchanged" "$copy/$file"
}

work() {
  local number=$1 copy=$folder/$1 i
  for ((i = number - 1; i < ${#mutants[@]}; i += jobs)); do
    split "${mutants[i]}"
    try "$copy" || return 1
    echo "$verdict: ${mutants[i]}" | tee -a "$copy/verdicts"
  done
}

started=$SECONDS
for ((job = 1; job <= jobs; ++job)); do
  prepare "$folder/$job"
done
# Nothing is left to stop when every job has ended; the verdict is told all the same.
trap 'kill $(jobs -p) 2>/dev/null || true' EXIT
for ((job = 1; job <= jobs; ++job)); do work "$job" & done
for ((job = 1; job <= jobs; ++job)); do wait -n || exit 1; done

verdicts=$(for ((job = 1; job <= jobs; ++job)); do cat "$folder/$job/verdicts"; done)
killed=$(grep -c '^killed' <<<"$verdicts" || true)
failed=0 survived=0 accepted=0
echo
while IFS= read -r line; do
  case $line in
  survived:*)
    split "${line#survived: }"
    if [ -n "$reason" ]; then
      accepted=$((accepted + 1))
    else
      echo "$line"
      survived=$((survived + 1))
    fi
    ;;
  broken:*)
    echo "does not compile: ${line#broken: }"
    failed=1
    ;;
  esac
done <<<"$verdicts"
total=${#mutants[@]}
echo "$killed of $total killed ($((total ? killed * 100 / total : 0)) %), $accepted survived with a reason," \
  "after $((SECONDS - started)) seconds"
[ "$survived" -le "$tolerated" ] || failed=1
exit $failed
