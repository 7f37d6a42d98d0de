#!/usr/bin/env bash
# Load benchmark: records of COUNT camera-size JPEGs against the bare Exiv2 floor.
#   bench/load.sh [COUNT] [ROUNDS]
# Builds make_corpus and bench_load in Release (build-release/), generates the corpus once
# into bench/corpus-load-COUNT, then runs the benchmark.
set -euo pipefail
cd "$(dirname "$0")/.."
COUNT=${1:-1000}
ROUNDS=${2:-3}
BUILD_DIR=${BUILD_DIR:-build-release}
cmake -S . -B "$BUILD_DIR" -G Ninja -DCMAKE_BUILD_TYPE=Release -DTAGMOOR_BUILD_TESTS=OFF >/dev/null
cmake --build "$BUILD_DIR" --target make_corpus bench_load
CORPUS=bench/corpus-load-$COUNT
if [ "$(find "$CORPUS" -maxdepth 1 -name '*.jpg' 2>/dev/null | wc -l)" -ne "$COUNT" ]; then
  rm -rf "$CORPUS"
  "$BUILD_DIR"/bench/make_corpus "$CORPUS" "$COUNT"
fi
"$BUILD_DIR"/bench/bench_load "$CORPUS" --rounds "$ROUNDS"
