#!/usr/bin/env bash
# Fuzzes the amplitude key file reader with libFuzzer (clang, ASan, UBSan)
# for a bounded time, starting from the corpus in tests/corpus/amplitude.
# Usage: scripts/fuzz-amplitude.sh [seconds]   (default 180)
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-180}

bash scripts/install-deps.sh clang libclang-rt-14-dev

out=build-fuzz
mkdir -p "$out" "$out/corpus"
clang++ -std=c++17 -O1 -g -fsanitize=fuzzer,address,undefined -fno-sanitize-recover=undefined -I. \
  tests/fuzz/amplitude_fuzz.cpp host/amplitude_import.cpp framework/report.cpp \
  -o "$out/amplitude_fuzz"
cp tests/corpus/amplitude/* "$out/corpus/"
"$out/amplitude_fuzz" -max_total_time="$seconds" -max_len=4096 -timeout=10 "$out/corpus" tests/corpus/amplitude \
  2>&1 | tail -n 15
echo "fuzz-amplitude: ran ${seconds}s without a crash"
