#!/usr/bin/env bash
# Runs clang-tidy on the program, or on some files: scripts/tidy.sh [--deep] [FILES...]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
checks=
if [ "${1:-}" = --deep ]; then
  # Properties stand in the order of the public interface, whatever room that takes.
  checks=--checks=clang-analyzer-*,-clang-analyzer-optin.performance.Padding
  shift
fi
linter=$(command -v clang-tidy-14 || command -v clang-tidy)
compiler=$(command -v clang++-14 || command -v clang++)

# Its own database: the checks read what the compiler of the same family would compile.
configure=(cmake -S . -B build/tidy -G Ninja "-DCMAKE_CXX_COMPILER=$compiler" -DCMAKE_BUILD_TYPE=Debug
  -DQXIMPORTJOB_TESTS=OFF -DQXIMPORTJOB_BENCH=OFF)
if ! log=$("${configure[@]}" 2>&1); then
  echo "$log" >&2
  exit 1
fi

# What is for Windows alone needs headers that are not here; its compiler checks it.
[ $# -gt 0 ] || mapfile -t files < <(git ls-files 'src/*.cpp' ':!src/com' ':!src/*_windows.cpp')
[ $# -eq 0 ] || files=("$@")
# The count of warnings in foreign headers says nothing.
printf '%s\0' "${files[@]}" |
  xargs -0 -n 1 -P 2 "$linter" -p build/tidy --quiet $checks 2> >(grep -vE '^[0-9]+ warnings? generated\.$' >&2)
