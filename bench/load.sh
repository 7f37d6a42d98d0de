#!/usr/bin/env bash
# Load benchmark: records of COUNT camera-size JPEGs against the bare Exiv2 floor.
#   bench/load.sh [COUNT] [ROUNDS]
# Builds make_corpus and bench_load in Release (build-release/), generates the corpus once
# into bench/corpus-camera-COUNT, then runs the benchmark.
set -euo pipefail
cd "$(dirname "$0")/.."
COUNT=${1:-1000}
ROUNDS=${2:-3}
source bench/common.sh
bench_build make_corpus bench_load
CORPUS=bench/corpus-camera-$COUNT
bench_corpus "$CORPUS" "$COUNT"
"$BUILD_DIR"/bench/bench_load "$CORPUS" --rounds "$ROUNDS"
