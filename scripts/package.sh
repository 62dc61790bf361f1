#!/usr/bin/env bash
# Makes the Debian packages of the commit that is checked out, in build/package: scripts/package.sh
# Needs Debian 12; what is missing is installed. $DEBFULLNAME and $DEBEMAIL name the maintainer. The version is that of
# the sources and the time of the commit; the same commit gives the same packages.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/bootstrap.sh build package
git diff --quiet HEAD -- || echo "Changes that are not committed are left out" >&2

version=$(sed -n 's/^project(.* VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt)
seconds=$(git log -1 --format=%ct)
package_version=$version~$(date -u -d "@$seconds" +%Y%m%d.%H%M%S)+$(git rev-parse --short=8 HEAD)
maintainer="${DEBFULLNAME:-The qximportjob team} <${DEBEMAIL:-qximportjob@firma.example}>"

folder=$PWD/build/package
sources=$folder/qximportjob-$version
rm -rf "$folder"
mkdir -p "$sources"
git archive HEAD | tar -x -C "$sources"
cp -r "$sources/packaging/debian" "$sources/debian"
sed -i "s/@MAINTAINER@/$maintainer/" "$sources/debian/control"
cat >"$sources/debian/changelog" <<CHANGES
qximportjob ($package_version) unstable; urgency=medium

  * Built from commit $(git rev-parse HEAD).
    CHANGELOG.md has the changes.

 -- $maintainer  $(date -u -R -d "@$seconds")
CHANGES

echo "Building $package_version; the log is build/package/build.log" >&2
export SOURCE_DATE_EPOCH=$seconds DEB_BUILD_OPTIONS="noautodbgsym parallel=$(nproc) ${DEB_BUILD_OPTIONS:-}"
if ! (cd "$sources" && dpkg-buildpackage --build=binary --no-sign) >"$folder/build.log" 2>&1; then
  tail -n 60 "$folder/build.log" >&2
  exit 1
fi
lintian --allow-root --fail-on error,warning "$folder"/*.changes
rm -rf "$sources"
ls "$folder"/*.deb
