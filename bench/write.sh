#!/usr/bin/env bash
# Write benchmark: the safe write of the bridge against a plain in-place Exiv2 write of the same
# tags, on COUNT camera-size JPEGs.
#   bench/write.sh [COUNT] [ROUNDS]
# Builds make_corpus and bench_write in Release (build-release/), generates the corpus once into
# bench/corpus-write-COUNT, then runs the benchmark (which works on copies).
set -euo pipefail
cd "$(dirname "$0")/.."
COUNT=${1:-100}
ROUNDS=${2:-2}
BUILD_DIR=${BUILD_DIR:-build-release}
cmake -S . -B "$BUILD_DIR" -G Ninja -DCMAKE_BUILD_TYPE=Release -DTAGMOOR_BUILD_TESTS=OFF >/dev/null
cmake --build "$BUILD_DIR" --target make_corpus bench_write
CORPUS=bench/corpus-write-$COUNT
if [ "$(find "$CORPUS" -maxdepth 1 -name '*.jpg' 2>/dev/null | wc -l)" -ne "$COUNT" ]; then
  rm -rf "$CORPUS"
  "$BUILD_DIR"/bench/make_corpus "$CORPUS" "$COUNT"
fi
"$BUILD_DIR"/bench/bench_write "$CORPUS" --count "$COUNT" --rounds "$ROUNDS"
