#!/usr/bin/env bash
# Tries includes with the include folders of the layers: try_includes.sh COMPILER FOLDER LAYER...
# FOLDER holds a file LAYER.includes per layer. Each header of forbidden_includes.txt must not compile in its layer
# and must compile in the layer that it belongs to, so that no misspelt name passes for a wall.
set -euo pipefail
compiler=$1 folder=$2
shift 2
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
layers=" $* "

compiles() { # LAYER HEADER
  echo "#include \"$2\"" | "$compiler" -std=c++20 -fPIC -fsyntax-only "@$folder/$1.includes" -x c++ - 2>/dev/null
}

owner() { # HEADER
  case $1 in
  ui/qt/*) echo ui_qt ;;
  erp/lookups/*) echo lookups ;;
  adapters/system/*) echo system_adapters ;;
  automation/classes/*) echo automation_classes ;;
  adapters/*/*) basename "$(dirname "$1")" ;;
  *) echo "${1%%/*}" ;;
  esac
}

failures=0 tried=0
declare -A found
while read -r layer header; do
  case $layer in ''|'#'*) continue ;; esac
  own=$(owner "$header")
  # Built without windows there are none of their layers.
  [[ $layers == *" $layer "* && $layers == *" $own "* ]] || continue
  tried=$((tried + 1))
  if [ -z "${found[$header]:-}" ]; then
    compiles "$own" "$header" || { echo "$own does not find its own $header"; failures=$((failures + 1)); }
    found[$header]=yes
  fi
  if compiles "$layer" "$header"; then
    echo "$layer can include $header"
    failures=$((failures + 1))
  fi
done <"$here/forbidden_includes.txt"
echo "$tried forbidden includes tried, $failures failures"
[ "$failures" -eq 0 ] && [ "$tried" -ge 18 ]
