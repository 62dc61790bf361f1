#!/usr/bin/env bash
# Lets every call of a small run to its storage fail, one after the other and with every effect, and checks that
# the run after it leaves the same rows as without a fault: scripts/fault_matrix.sh [COMMAND...]
# Commands are init, stage, import, process, release and purge; without an argument all of them.
#
# scripts/fault_matrix.sh --memory [--step N | --paths N] [COMMAND...] does the same with every request for memory,
# with every N-th, or with the first one of each call path of N callers; then also for check (with list and show),
# export (with import), settings and protocol.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
usage() {
  sed -n '2,9s/^# \{0,1\}//p' "$0" >&2
  exit 2
}
suite=StorageFaults
export QX_FAULT_STEP=1
if [ "${1:-}" = --memory ]; then
  suite=MemoryFaults
  shift
  if [ "${1:-}" = --step ] || [ "${1:-}" = --paths ]; then
    [[ "${2:-}" =~ ^[1-9][0-9]*$ ]] || usage
    if [ "$1" = --step ]; then QX_FAULT_STEP=$2; else export QX_FAULT_PATHS=$2; fi
    shift 2
  fi
fi
declare -A tests
while read -r command storage memory; do
  if [ $suite = StorageFaults ]; then name=$storage; else name=$memory; fi
  [ "$name" = - ] || tests[$command]=$name
done <<'END'
init     ADatabaseIsCreatedByTheNextAttempt          ADatabaseIsCreatedByTheNextAttempt
stage    AFileIsStagedWhollyOrNotAtAll               AFileIsStagedByTheNextAttempt
check    -                                           JobsAreCheckedListedAndShownAsTheyAre
release  JobsAreReleasedTogetherOrNotAtAll           JobsAreReleasedByTheNextAttempt
process  EveryJobIsProcessedOnceWhateverCallFails    EveryJobIsProcessedOnceWhateverRequestFails
protocol -                                           AProtocolIsPrintedWholeOrNotAtAll
export   -                                           AJobFileIsWrittenAndReadByTheNextAttempt
import   AJobFileThatIsReadInAgainIsComplete         -
purge    APurgeThatIsRepeatedIsComplete              APurgeThatIsRepeatedIsComplete
settings -                                           AnOptionIsStoredByTheNextAttempt
END
filter=
for command in "$@"; do
  [ -n "${tests[$command]:-}" ] || usage
  filter+="$suite.${tests[$command]}:"
done
scripts/bootstrap.sh build test
scripts/build.sh dev test_faults
QX_FAULT_POINTS=0 build/dev/bin/test_faults --gtest_brief=1 --gtest_filter="${filter:-$suite.*}"
