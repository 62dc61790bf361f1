#!/usr/bin/env bash
# Builds the parts of Qt that the windows need, static and for Windows, from Debian's source package of the installed
# version: scripts/windows_qt.sh. Prints the folder. It lies outside the tree, is made once per version and set of
# options, and takes an hour of processor time; a build that was ended goes on when called again.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/bootstrap.sh build windows
compilers=x86_64-w64-mingw32
absent=(
  # Modules.
  network sql xml testlib dbus concurrent printsupport
  # Drawing by the graphics card, formats and fonts that are not used.
  opengl dynamicgl vulkan direct2d directwrite3 freetype jpeg gif ico movie pdf textmarkdownreader textmarkdownwriter
  textodfwriter imageformat_ppm imageformat_xbm imageformat_xpm
  # Parts of the core.
  icu zstd sharedmemory systemsemaphore cborstreamwriter commandlineparser jalalicalendar hijricalendar
  islamiccivilcalendar timezone etw undocommand undostack undogroup
  # Widgets.
  graphicsview graphicseffect mdiarea dockwidget wizard undoview fontdialog colordialog fontcombobox lcdnumber dial
  keysequenceedit syntaxhighlighter columnview errormessage progressdialog splashscreen textbrowser toolbox
  datawidgetmapper commandlinkbutton systemtrayicon
  # Debian's source has no header for it.
  tabletevent
  # Instructions that not every processor has.
  avx avx512f)
options=(
  -DCMAKE_SYSTEM_NAME=Windows -DCMAKE_SYSTEM_PROCESSOR=x86_64
  -DCMAKE_C_COMPILER="$compilers-gcc-posix" -DCMAKE_CXX_COMPILER="$compilers-g++-posix"
  -DCMAKE_RC_COMPILER="$compilers-windres" -DCMAKE_FIND_ROOT_PATH="/usr/$compilers"
  -DCMAKE_FIND_ROOT_PATH_MODE_PROGRAM=NEVER -DCMAKE_FIND_ROOT_PATH_MODE_LIBRARY=ONLY
  -DCMAKE_FIND_ROOT_PATH_MODE_INCLUDE=ONLY -DCMAKE_FIND_ROOT_PATH_MODE_PACKAGE=ONLY
  -DQT_HOST_PATH=/usr -DQT_HOST_PATH_CMAKE_DIR="$(dirname "$(dirname "$(dpkg -L qt6-base-dev | grep '/Qt6Config.cmake$')")")"
  -DCMAKE_BUILD_TYPE=MinSizeRel -DBUILD_SHARED_LIBS=OFF -DBUILD_WITH_PCH=ON -DINPUT_opengl=no
  -DQT_BUILD_EXAMPLES=OFF -DQT_BUILD_TESTS=OFF)
for feature in "${absent[@]}"; do options+=("-DFEATURE_$feature=OFF"); done
for library in zlib pcre2 png harfbuzz doubleconversion libb2; do options+=("-DFEATURE_system_$library=OFF"); done

version=$(dpkg-query -W -f='${Version}' qt6-base-dev)
key=$(printf '%s\n' "${options[@]}" | sha256sum | cut -c1-8)
root=${XDG_CACHE_HOME:-$HOME/.cache}/qximportjob/qt-$version-mingw-$key
mkdir -p "$root"
exec 9>"$root/lock"
flock 9
if [ -e "$root/made" ]; then
  echo "$root/qt"
  exit 0
fi

if [ ! -e "$root/unpacked" ]; then
  echo "Fetching the source of Qt $version" >&2
  rm -rf "$root/source"
  scripts/debian_source.sh "$root/source" "qt6-base=$version"
  # Drag and drop needs a format that is left out; a few lines do not compile without it.
  sources=("$root"/source/qt6-base-*/src)
  perl -0pi -e 's/#endif\n        \}\n(        case QEvent::TouchBegin)/        }\n#endif\n$1/' \
    "${sources[0]}/widgets/kernel/qapplication.cpp"
  perl -pi -e 's/\bdragEnabled (&&|\|\|)/false $1/; s/if \(d->dragEnabled\)/if (false)/' \
    "${sources[0]}/widgets/itemviews/qabstractitemview.cpp"
  perl -pi -e 's/QPixmap\(ignoreDragCursorXpmC\)/QPixmap()/' \
    "${sources[0]}/plugins/platforms/windows/qwindowscursor.cpp"
  touch "$root/unpacked"
fi
if [ ! -e "$root/configured" ]; then
  rm -rf "$root/build"
  cmake -S "$root"/source/qt6-base-*/ -B "$root/build" -G Ninja -DCMAKE_INSTALL_PREFIX="$root/qt" "${options[@]}" \
    >"$root/configure.log" 2>&1 || { tail -n 30 "$root/configure.log" >&2; exit 1; }
  touch "$root/configured"
fi
# A build that was ended may have left empty what its tools write; it is written again. For parts that are left out it is
# empty for good.
find "$root/build" \( \( -name 'moc_*.cpp' -o -name '*.moc' -o -name 'qrc_*.cpp' \) -size 0 -o -path '*_autogen/timestamp' \) \
  -delete
echo "Building Qt $version for Windows, log: $root/build.log" >&2
ninja -C "$root/build" >"$root/build.log" 2>&1 || { tail -n 30 "$root/build.log" >&2; exit 1; }
cmake --install "$root/build" >"$root/install.log" 2>&1 || { tail -n 30 "$root/install.log" >&2; exit 1; }
touch "$root/made"
rm -rf "$root/source" "$root/build"
echo "$root/qt"
