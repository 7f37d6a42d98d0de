#!/usr/bin/env bash
# Scan benchmark: COUNT small JPEGs added through the scan (two readers) against a plain
# sequential loop of the record loader, with the main thread's largest event-loop gap.
#   bench/scan.sh [COUNT] [ROUNDS]
# Builds make_corpus and bench_scan in Release (build-release/), generates the corpus
# once into bench/corpus-scan-COUNT, then runs the benchmark.
set -euo pipefail
cd "$(dirname "$0")/.."
COUNT=${1:-10000}
ROUNDS=${2:-3}
source bench/common.sh
bench_build make_corpus bench_scan
CORPUS=bench/corpus-scan-$COUNT
bench_corpus "$CORPUS" "$COUNT" --size 96x64 --prefix scan
"$BUILD_DIR"/bench/bench_scan "$CORPUS" --rounds "$ROUNDS"
