#!/usr/bin/env bash
# The main job on the built-in default: the Explosion preset on the generated
# test card, 24 frames into out/ with a contact sheet of every 4th frame.
set -euo pipefail
cd "$(dirname "$0")/.."
build_dir=${BUILD_DIR:-build}
"$build_dir/paneburst-render" --preset explosion --frames 1-24 \
  --out out/explosion.%04d.png --contact-sheet out/explosion-sheet.png --contact-every 4 \
  --overwrite "$@"
