#!/usr/bin/env bash
# Draws the pictures of the manual anew from the demo company: scripts/screenshots.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/bootstrap.sh build test
scripts/build.sh dev draw_screenshots
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
# A home of its own: the pictures must not show the settings of whoever draws them.
HOME=$folder XDG_CONFIG_HOME=$folder/config XDG_RUNTIME_DIR=$folder QT_QPA_PLATFORM=xcb \
  timeout 120 xvfb-run -a -s "-screen 0 1600x1000x24" build/dev/bin/draw_screenshots "$folder/demo.db" docs/images
ls docs/images/*.png
