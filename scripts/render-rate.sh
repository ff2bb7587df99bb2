#!/usr/bin/env bash
# The renderer end to end against the plug-in alone: paneburst-render's frame
# rate on a generated 1920 x 1080 sequence (front and back clips, PNG in and
# out, then EXR in and out) as a ratio of the plug-in's own frame rate from
# paneburst-bench in the same quality, look, size and depth, on the same
# number of threads, measured in the same run.
#
# The tool's rate leaves out its start-up, the simulated run-up and the first
# frame: it is (N - 1) frames over the time N frames take minus the time one
# takes. Usage: scripts/render-rate.sh [frames, default 9]; BUILD_DIR selects
# the build (default build), THREADS the threads (default 2).
set -euo pipefail
cd "$(dirname "$0")/.."
build=${BUILD_DIR:-build}
frames=${1:-9}
threads=${THREADS:-2}
render="$build/paneburst-render"
bench="$build/paneburst-bench"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The Explosion look on 100 x 100 elements in Med Quality, from frame 5 of a
# shot that starts at 1, as paneburst-bench times it.
look=(--preset explosion --set "X Elements=100" --set "Y Elements=100" --quality med --threads "$threads")
first=5
last=$((first + frames - 1))

seconds() { # runs a command, prints its wall time in seconds
    local t0 t1
    t0=$(date +%s.%N)
    "$@" >/dev/null
    t1=$(date +%s.%N)
    awk -v a="$t0" -v b="$t1" 'BEGIN { print b - a }'
}

plugin_ms() { # the plug-in's own frame time at a depth
    "$bench" --benchmark_filter="BM_Frame/w:1920/h:1080/quality:1/threads:$threads/depth:$1/elements:100/" \
        --benchmark_min_time=2 --benchmark_color=false 2>/dev/null |
        awk '/^BM_Frame/ { print ($3 == "s" ? $2 * 1000 : $2) }'
}

for ext in png exr; do
    # Inputs: the test card in flight (front) and the Confetti look (back).
    "$render" -q --size 1920x1080 --frames "$first-$last" --quality low --out "$work/in/front.%04d.$ext"
    "$render" -q --size 1920x1080 --frames "$first-$last" --quality low --preset confetti \
        --out "$work/in/back.%04d.$ext"
    run=("$render" -q --front "$work/in/front.%04d.$ext" --back "$work/in/back.%04d.$ext" --shot-start 1
        "${look[@]}" --overwrite)
    one=$(seconds "${run[@]}" --frames "$first-$first" --out "$work/out1/o.%04d.$ext")
    all=$(seconds "${run[@]}" --frames "$first-$last" --out "$work/outn/o.%04d.$ext")
    tool_ms=$(awk -v a="$all" -v o="$one" -v n="$frames" 'BEGIN { print (a - o) * 1000 / (n - 1) }')
    # PNG sources of 8 bits render in 8-bit buffers, EXR (floating point) in 12-bit.
    depth=8
    [ "$ext" = exr ] && depth=12
    own_ms=$(plugin_ms "$depth")
    awk -v e="$ext" -v t="$tool_ms" -v p="$own_ms" 'BEGIN {
        printf "%s: tool %.1f ms/frame (%.2f fps), plug-in %.1f ms/frame (%.2f fps), tool/plug-in rate %.2f\n",
            e, t, 1000 / t, p, 1000 / p, p / t }'
done
