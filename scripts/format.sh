#!/usr/bin/env bash
# Formats every tracked C++ file, or with --check only tells which are not: scripts/format.sh [--check]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
formatter=$(command -v clang-format-14 || command -v clang-format)

case ${1:-} in
--check)
  if ! git ls-files -z '*.h' '*.cpp' | xargs -0 -r "$formatter" --dry-run -Werror; then
    echo "Some files are not formatted. This repairs them: scripts/format.sh" >&2
    exit 1
  fi
  ;;
'') git ls-files -z '*.h' '*.cpp' | xargs -0 -r "$formatter" -i ;;
*)
  echo "usage: scripts/format.sh [--check]" >&2
  exit 2
  ;;
esac
