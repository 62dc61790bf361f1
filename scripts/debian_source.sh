#!/usr/bin/env bash
# Unpacks source packages of Debian into a folder: scripts/debian_source.sh FOLDER PACKAGE[=VERSION]...
set -euo pipefail
[ $# -ge 2 ] || { echo "usage: scripts/debian_source.sh FOLDER PACKAGE[=VERSION]..." >&2; exit 2; }
mkdir -p "$1"
folder=$(cd "$1" && pwd)
shift
# Packages of sources by a configuration of our own: that of the system may know none.
apt=$(mktemp -d)
trap 'rm -rf "$apt"' EXIT
mkdir -p "$apt"/{parts,lists/partial,cache/archives/partial}
awk -v RS= '/URIs:[^\n]*\/debian/ { sub(/Types:[^\n]*/, "Types: deb-src"); print $0 "\n" }' \
  /etc/apt/sources.list.d/*.sources >"$apt/parts/debian.sources" 2>/dev/null || true
sed -n 's/^deb \(.*\/debian.*\)/deb-src \1/p' /etc/apt/sources.list >"$apt/parts/debian.list" 2>/dev/null || true
options=(-qq -o Dir::Etc::SourceList=/dev/null -o Dir::Etc::SourceParts="$apt/parts" -o Dir::State::Lists="$apt/lists"
  -o Dir::Cache="$apt/cache" -o APT::Sandbox::User=root)
apt-get "${options[@]}" update
(cd "$folder" && apt-get "${options[@]}" source "$@" >/dev/null)
