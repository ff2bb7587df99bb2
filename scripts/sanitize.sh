#!/usr/bin/env bash
# Builds with AddressSanitizer and UndefinedBehaviorSanitizer into build-asan/
# and runs the test suite there.
set -euo pipefail
cd "$(dirname "$0")/.."
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
BUILD_DIR=build-asan bash scripts/build.sh -DPANEBURST_SANITIZE=ON -DPANEBURST_BENCH=OFF
BUILD_DIR=build-asan bash scripts/test.sh
