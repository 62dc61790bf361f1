#!/usr/bin/env bash
# Stops what start_server.sh has started, if anything: stop_server.sh FILE
set -euo pipefail
file=$1
[ -e "$file.process" ] || exit 0
rm -f "$file"
server=$(cat "$file.process")
rm -f "$file.process"
for _ in $(seq 1200); do
  kill -0 "$server" 2>/dev/null || exit 0
  sleep 0.05
done
echo "the server is still there" >&2
exit 1
