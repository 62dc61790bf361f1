#!/usr/bin/env bash
# Measures the program against bare SQLite on this machine:
# scripts/bench.sh [--quick | --instructions] [--only PART_OF_NAME]
# --instructions counts the instructions of a job with callgrind, which come out the same on any machine.
# scripts/bench.sh --postgres [--quick] [--delay MILLISECONDS] [--only PART_OF_NAME]
# measures it on a PostgreSQL server of its own, with and without a delay each way (1 ms).
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
usage() {
  echo "usage: scripts/bench.sh [--quick | --instructions] [--only PART_OF_NAME]" >&2
  echo "       scripts/bench.sh --postgres [--quick] [--delay MILLISECONDS] [--only PART_OF_NAME]" >&2
  exit 2
}
if [ "${1:-}" = --postgres ]; then
  shift
  scripts/bootstrap.sh build test
  scripts/build.sh release qximportjob bench_floor bench_servers
  folder=$(mktemp -d build/release/bench-XXXXXX)
  trap 'rm -rf "$folder"' EXIT
  scripts/with-postgres.sh build/release/bin/bench_servers "$folder" "$@"
  exit
fi
arguments=("$@")
only=
size=()
list=yes
while [ $# -gt 0 ]; do
  case $1 in
  --quick)
    size=(--quick)
    shift
    ;;
  --instructions)
    list=no
    shift
    ;;
  --only)
    shift
    only=${1:-}
    shift || usage
    ;;
  *) usage ;;
  esac
done
scripts/bootstrap.sh build bench
scripts/build.sh release qximportjob bench_floor bench_driver bench_list
# On the disk of the checkout: a temporary folder in memory would flatter both sides.
folder=$(mktemp -d build/release/bench-XXXXXX)
trap 'rm -rf "$folder"' EXIT
build/release/bin/bench_driver "$folder" "${arguments[@]}"
[ $list = yes ] || exit 0
case "job list" in
*"$only"*)
  echo
  build/release/bin/bench_list "$folder" "${size[@]}"
  ;;
esac
