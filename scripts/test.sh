#!/usr/bin/env bash
# Runs the whole test suite on the build in build/ (or $BUILD_DIR).
set -euo pipefail
cd "$(dirname "$0")/.."
build_dir=${BUILD_DIR:-build}
ctest --test-dir "$build_dir" --output-on-failure -j "$(nproc)"
