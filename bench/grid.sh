#!/usr/bin/env bash
# Grid memory benchmark: 10,000 photos (100 generated JPEGs under 10,000 distinct names, as
# hard links) scrolled through offscreen. Target: peak RSS under 400 MB.
set -euo pipefail
cd "$(dirname "$0")/.."
corpus=bench/corpus-grid
if [ ! -f "$corpus/.complete" ]; then
  rm -rf "$corpus"; mkdir -p "$corpus/src"
  for n in $(seq 1 100); do
    convert -size 1600x1067 -seed "$n" plasma:fractal -quality 85 "$corpus/src/p$n.jpg"
  done
  for i in $(seq 0 9999); do
    ln "$corpus/src/p$((i % 100 + 1)).jpg" "$corpus/IMG_$(printf %05d "$i").jpg"
  done
  touch "$corpus/.complete"
fi
cmake --build build --target bench_grid_memory >/dev/null
QT_QPA_PLATFORM=offscreen ./build/bench/bench_grid_memory "$corpus" 10000
