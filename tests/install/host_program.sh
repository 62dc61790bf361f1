#!/usr/bin/env bash
# Installs the build into a folder of its own and builds and runs the example of a host program with nothing else:
# host_program.sh CMAKE BUILD COMPILER FLAGS
set -euo pipefail
cmake=$1 build=$2 compiler=$3 flags=$4
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
# Nothing of the user's own installation is read or written.
export HOME=$folder XDG_CONFIG_HOME=$folder/config XDG_DATA_HOME=$folder/data

run() { "$@" >"$folder/log" 2>&1 || { cat "$folder/log" >&2; echo "$* failed" >&2; exit 1; }; }
run "$cmake" --install "$build" --prefix "$folder/usr" --component development
# The installation has moved, and names no file of the build.
mv "$folder/usr" "$folder/moved"
if grep -rF "$build" "$folder/moved/lib"*/cmake "$folder"/moved/lib*/*/cmake 2>/dev/null; then
  echo "the package files name the build" >&2
  exit 1
fi

run "$cmake" -S "$folder/moved/share/doc/qximportjob/examples/host" -B "$folder/build" -G Ninja \
  "-DCMAKE_PREFIX_PATH=$folder/moved" "-DCMAKE_CXX_COMPILER=$compiler" "-DCMAKE_CXX_FLAGS=$flags"
run "$cmake" --build "$folder/build"

# A second call finds both jobs done.
printed=$("$folder/build/host" "$folder/prüf.db" && "$folder/build/host" "$folder/prüf.db")
expected=$'SHOP-K-4711 Kunden 90010 Erledigt\nSHOP-A-2026-0815 Auftrag NUMBER Erledigt'
if [ "$(sed 's/ [0-9]\{6\} / NUMBER /' <<<"$printed")" != "$expected" ]; then
  printf 'the host printed\n%s\nnot\n%s\n' "$printed" "$expected" >&2
  exit 1
fi
