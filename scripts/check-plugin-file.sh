#!/usr/bin/env bash
# Checks that a plug-in file needs only system libraries and exports the
# host-facing names undecorated.
set -euo pipefail
file=${1:?usage: check-plugin-file.sh paneburst.spark}
needed=$(readelf -d "$file" | awk '/NEEDED/ {print $5}' | tr -d '[]')
bad=$(echo "$needed" | grep -vE '^(libGL|libOpenGL|libGLX|libGLdispatch|libstdc\+\+|libm|libc|libgcc_s|libpthread|libdl|ld-linux)[.-]' || true)
if [ -n "$bad" ]; then
  echo "FAIL: $file needs non-system libraries: $bad"
  exit 1
fi
exports=$(nm -D --defined-only "$file" | awk '{print $3}')
for name in SparkInitialise SparkUnInitialise SparkProcessStart SparkProcess SparkClips \
            SparkMemoryTempBuffers DLwidth DLheight DLscalesr DLnumProc DL_Sync_Ctrl Instance; do
  if ! grep -qx "$name" <<<"$exports"; then
    echo "FAIL: $file does not export $name"
    exit 1
  fi
done
undefined_spark=$(nm -D --undefined-only "$file" | awk '{print $2}' | grep '^spark' | wc -l)
echo "ok: needs $(echo $needed | tr '\n' ' '); imports $undefined_spark host functions by name"
