#!/usr/bin/env bash
# Makes the libraries that a build for Windows needs, in build/windows-libraries: SQLite and utf8proc from Debian's
# source packages, GoogleTest from its package of sources, and the headers that are the same everywhere. What is
# there already stays; remove the folder to make it anew.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/bootstrap.sh build windows
root=$PWD/build/windows-libraries
made=$root/made
compiler=x86_64-w64-mingw32-gcc-posix
archiver=x86_64-w64-mingw32-ar
[ -e "$made" ] && exit 0
rm -rf "$root"
mkdir -p "$root"/{include,lib,share/cmake,source,apt/parts,apt/lists/partial,apt/cache/archives/partial}

# Packages of sources by a configuration of our own: that of the system may know none.
{
  awk -v RS= '/URIs:[^\n]*\/debian/ { sub(/Types:[^\n]*/, "Types: deb-src"); print $0 "\n" }' \
    /etc/apt/sources.list.d/*.sources 2>/dev/null || true
} >"$root/apt/parts/debian.sources"
sed -n 's/^deb \(.*\/debian.*\)/deb-src \1/p' /etc/apt/sources.list 2>/dev/null >"$root/apt/parts/debian.list" || true
apt_options=(-qq -o Dir::Etc::SourceList=/dev/null -o Dir::Etc::SourceParts="$root/apt/parts"
  -o Dir::State::Lists="$root/apt/lists" -o Dir::Cache="$root/apt/cache" -o APT::Sandbox::User=root)
echo "Fetching the sources of sqlite3 and utf8proc" >&2
apt-get "${apt_options[@]}" update
(cd "$root/source" && apt-get "${apt_options[@]}" source sqlite3 utf8proc >/dev/null)

build() { # LIBRARY FILE OPTION...
  local library=$1 file=$2
  shift 2
  "$compiler" -O2 "$@" -c "$file" -o "$root/source/$library.o"
  "$archiver" rcs "$root/lib/lib$library.a" "$root/source/$library.o"
}

echo "Building SQLite, utf8proc and GoogleTest for Windows" >&2
mkdir "$root/source/sqlite-build"
(
  cd "$root/source/sqlite-build"
  ../sqlite3-*/configure --disable-tcl --disable-readline
  make sqlite3.c
) >"$root/source/sqlite.log" 2>&1 || { tail -n 30 "$root/source/sqlite.log" >&2; exit 1; }
build sqlite3 "$root/source/sqlite-build/sqlite3.c" -DSQLITE_ENABLE_COLUMN_METADATA
cp "$root/source/sqlite-build/"sqlite3{,ext}.h "$root/include"
build utf8proc "$root"/source/utf8proc-*/utf8proc.c -DUTF8PROC_STATIC
cp "$root"/source/utf8proc-*/utf8proc.h "$root/include"

ln -s /usr/include/CLI /usr/include/nlohmann /usr/include/rapidjson "$root/include"
cp -r /usr/share/cmake/CLI11 /usr/share/cmake/nlohmann_json "$root/share/cmake"
{
  cmake -S /usr/src/googletest -B "$root/source/googletest" -G Ninja -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/windows-toolchain.cmake" -DCMAKE_INSTALL_PREFIX="$root"
  cmake --build "$root/source/googletest" --target install
} >"$root/source/googletest.log" 2>&1 || { tail -n 30 "$root/source/googletest.log" >&2; exit 1; }
rm -rf "$root/source" "$root/apt"
touch "$made"
