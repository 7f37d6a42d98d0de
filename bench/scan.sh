#!/usr/bin/env bash
# Scan benchmark: COUNT small JPEGs added through the scan (two readers) against a plain
# sequential loop of the record loader, with the main thread's largest event-loop gap.
#   bench/scan.sh [COUNT] [ROUNDS]
# Builds make_corpus and bench_scan (build/ unless BUILD_DIR is set), generates the corpus
# once into bench/corpus-scan-COUNT, then runs the benchmark.
set -euo pipefail
cd "$(dirname "$0")/.."
COUNT=${1:-10000}
ROUNDS=${2:-3}
BUILD_DIR=${BUILD_DIR:-build}
cmake -S . -B "$BUILD_DIR" -G Ninja >/dev/null
cmake --build "$BUILD_DIR" --target make_corpus bench_scan
CORPUS=bench/corpus-scan-$COUNT
if [ "$(find "$CORPUS" -maxdepth 1 -name '*.jpg' 2>/dev/null | wc -l)" -ne "$COUNT" ]; then
  rm -rf "$CORPUS"
  "$BUILD_DIR"/bench/make_corpus "$CORPUS" "$COUNT" --size 96x64 --prefix scan
fi
"$BUILD_DIR"/bench/bench_scan "$CORPUS" --rounds "$ROUNDS"
