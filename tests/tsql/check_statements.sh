#!/usr/bin/env bash
# Runs tests that write down what the component asks of a database, in its own words and as it would be sent to
# SQL Server, and checks that and the script of the tables against a grammar of Transact-SQL:
# tests/tsql/check_statements.sh FOLDER PROGRAMS SCRIPT, with the folder of the test programs. The grammar is installed
# into the first folder once.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
folder=$1
programs=$2
script=$3
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
# Left out are tests that look into the embedded database: its plans, and what it is when it is damaged.
run() { QX_STATEMENTS=$statements "$programs/test_$1" --gtest_brief=1 --gtest_filter="$2"; }
run golden '*'
run engine '-*.AStoreThatFails*:OrderSources.OrdersFailAndCustomersDoNotWhileTheDayOfTheTaxChangeCannotBeRead'
run erp 'LookupSourcesTest.*-*.APageOfCustomersOrArticlesReadsAnIndexInItsOrder'
run store '*'
# A statement of the script ends with a line; comments are none.
sed '/^--/d' "$script" | tr '\n' ' ' | sed 's/; */;\n/g' >> "$statements"
sort -u "$statements" | NODE_PATH=$folder/node_modules node "$here/check_statements.js"
