#!/usr/bin/env bash
# Lets every call of a small run to its storage fail, one after the other and with every effect, and checks that
# the run after it leaves the same rows as without a fault: scripts/fault_matrix.sh [COMMAND...]
# Commands are init, stage, import, process, release and purge; without an argument all of them.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
declare -A tests=(
  [init]=ADatabaseIsCreatedByTheNextAttempt
  [stage]=AFileIsStagedWhollyOrNotAtAll
  [import]=AJobFileThatIsReadInAgainIsComplete
  [process]=EveryJobIsProcessedOnceWhateverCallFails
  [release]=JobsAreReleasedTogetherOrNotAtAll
  [purge]=APurgeThatIsRepeatedIsComplete)
filter=
for command in "$@"; do
  if [ -z "${tests[$command]:-}" ]; then
    echo "usage: scripts/fault_matrix.sh [COMMAND...]" >&2
    exit 2
  fi
  filter+="StorageFaults.${tests[$command]}:"
done
scripts/bootstrap.sh build test
scripts/build.sh dev test_faults
QX_FAULT_POINTS=0 build/dev/bin/test_faults --gtest_brief=1 --gtest_filter="${filter:-*}"
