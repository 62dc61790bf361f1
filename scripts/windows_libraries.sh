#!/usr/bin/env bash
# Makes the libraries that a build for Windows needs, in a folder per compiler below build/windows-libraries: SQLite and
# utf8proc from Debian's source packages, GoogleTest from its package of sources, and the headers that are the same
# everywhere. What is there already stays; remove the folder to make it anew.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/bootstrap.sh build windows
root=$PWD/build/windows-libraries
[ -e "$root/made" ] && exit 0
rm -rf "$root"
source=$root/source
mkdir -p "$source/sqlite-build"

echo "Fetching the sources of sqlite3 and utf8proc" >&2
scripts/debian_source.sh "$source" sqlite3 utf8proc
echo "Building SQLite, utf8proc and GoogleTest for Windows" >&2
(
  cd "$source/sqlite-build"
  ../sqlite3-*/configure --disable-tcl --disable-readline
  make sqlite3.c
) >"$source/sqlite.log" 2>&1 || { tail -n 30 "$source/sqlite.log" >&2; exit 1; }

build() { # COMPILER LIBRARY FILE OPTION...
  local folder=$root/$1 compiler=$1 library=$2 file=$3
  shift 3
  "$compiler-gcc-posix" -O2 "$@" -c "$file" -o "$folder/$library.o"
  "$compiler-ar" rcs "$folder/lib/lib$library.a" "$folder/$library.o"
  rm "$folder/$library.o"
}
libraries() { # COMPILER
  mkdir -p "$root/$1"/{include,lib,share/cmake}
  cp "$source/sqlite-build/"sqlite3{,ext}.h "$source"/utf8proc-*/utf8proc.h "$root/$1/include"
  ln -s /usr/include/CLI /usr/include/nlohmann /usr/include/rapidjson /usr/include/xxhash.h "$root/$1/include"
  cp -r /usr/share/cmake/CLI11 /usr/share/cmake/nlohmann_json "$root/$1/share/cmake"
  build "$1" sqlite3 "$source/sqlite-build/sqlite3.c" -DSQLITE_ENABLE_COLUMN_METADATA
  build "$1" utf8proc "$source"/utf8proc-*/utf8proc.c -DUTF8PROC_STATIC
}
googletest() {
  cmake -S /usr/src/googletest -B "$source/googletest" -G Ninja -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/windows-toolchain.cmake" \
    -DCMAKE_INSTALL_PREFIX="$root/x86_64-w64-mingw32" &&
    cmake --build "$source/googletest" --target install
}
libraries i686-w64-mingw32 &
libraries x86_64-w64-mingw32
wait $!
googletest >"$source/googletest.log" 2>&1 || { tail -n 30 "$source/googletest.log" >&2; exit 1; }
rm -rf "$source"
touch "$root/made"
