#!/usr/bin/env bash
# Runs the tests that record statements and checks each statement against a grammar of Transact-SQL:
# tests/tsql/check_statements.sh TEST_PROGRAM FOLDER. The grammar is installed into the folder once.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
program=$1
folder=$2
mkdir -p "$folder"
if ! cmp -s "$here/package.json" "$folder/package.json"; then
  cp "$here/package.json" "$folder/wanted.json"
  rm -rf "$folder/node_modules"
  (cd "$folder" && rm -f package.json && cp wanted.json package.json &&
    npm install --no-audit --no-fund --no-package-lock --loglevel=error) || {
    rm -f "$folder/package.json"
    exit 1
  }
fi
statements=$(mktemp)
trap 'rm -f "$statements"' EXIT
QX_STATEMENTS=$statements "$program" --gtest_brief=1 --gtest_filter='Statement*'
sort -u "$statements" | NODE_PATH=$folder/node_modules node "$here/check_statements.js"
