#!/usr/bin/env bash
# The main job on the built-in default: renders frames of the generated test
# card through the plug-in into out/.
set -euo pipefail
cd "$(dirname "$0")/.."
build_dir=${BUILD_DIR:-build}
"$build_dir/paneburst-render" --frames 5 --blend 100 --out out "$@"
