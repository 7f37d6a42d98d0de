#!/usr/bin/env bash
# Write benchmark: the safe write of the bridge against a plain in-place Exiv2 write of the same
# tags, on COUNT camera-size JPEGs.
#   bench/write.sh [COUNT] [ROUNDS]
# Builds make_corpus and bench_write in Release (build-release/), generates the corpus once into
# bench/corpus-camera-COUNT, then runs the benchmark (which works on copies).
set -euo pipefail
cd "$(dirname "$0")/.."
COUNT=${1:-100}
ROUNDS=${2:-2}
source bench/common.sh
bench_build make_corpus bench_write
CORPUS=bench/corpus-camera-$COUNT
bench_corpus "$CORPUS" "$COUNT"
"$BUILD_DIR"/bench/bench_write "$CORPUS" --count "$COUNT" --rounds "$ROUNDS"
