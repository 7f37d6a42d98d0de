#!/usr/bin/env bash
# Grid memory benchmark: 10,000 photos (100 generated 1600x1067 JPEGs under 10,000 distinct
# names, as hard links) scrolled through offscreen. Target: peak RSS under 400 MB.
set -euo pipefail
cd "$(dirname "$0")/.."
source bench/common.sh
bench_build make_corpus bench_grid_memory
corpus=bench/corpus-grid
if [ ! -f "$corpus/.complete" ]; then
  rm -rf "$corpus"
  bench_corpus "$corpus/src" 100 --size 1600x1067 --prefix p
  i=0
  for n in $(seq 0 99); do
    for src in "$corpus"/src/*.jpg; do
      ln "$src" "$corpus/IMG_$(printf %05d "$i").jpg"
      i=$((i + 1))
    done
    [ "$i" -ge 10000 ] && break
  done
  touch "$corpus/.complete"
fi
QT_QPA_PLATFORM=offscreen "$BUILD_DIR"/bench/bench_grid_memory "$corpus" 10000
