#!/usr/bin/env bash
# Fuzzes the amplitude key file reader with libFuzzer (clang, ASan, UBSan)
# for a bounded time, starting from the corpus in tests/corpus/amplitude.
# Usage: scripts/fuzz-amplitude.sh [seconds]   (default 180)
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-180}

missing=()
for p in clang libclang-rt-14-dev; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  sudo=(); [ "$(id -u)" -eq 0 ] || sudo=(sudo)
  "${sudo[@]}" apt-get update -qq
  DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

out=build-fuzz
mkdir -p "$out" "$out/corpus"
clang++ -std=c++17 -O1 -g -fsanitize=fuzzer,address,undefined -fno-sanitize-recover=undefined -I. \
  tests/fuzz/amplitude_fuzz.cpp host/amplitude_import.cpp framework/report.cpp \
  -o "$out/amplitude_fuzz"
cp tests/corpus/amplitude/* "$out/corpus/"
"$out/amplitude_fuzz" -max_total_time="$seconds" -max_len=4096 -timeout=10 "$out/corpus" tests/corpus/amplitude \
  2>&1 | tail -n 15
echo "fuzz-amplitude: ran ${seconds}s without a crash"
