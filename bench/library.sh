#!/usr/bin/env bash
# Photo library benchmark: the rows of a 100,000-asset package read from its copy, and the
# originals of a package added through the scan against the same files added as a folder.
#   bench/library.sh [COUNT] [ROUNDS] [ASSETS]
set -euo pipefail
cd "$(dirname "$0")/.."
COUNT=${1:-2000}
ROUNDS=${2:-3}
ASSETS=${3:-100000}
source bench/common.sh
bench_build make_corpus bench_library
CORPUS=bench/corpus-library-$COUNT
bench_corpus "$CORPUS" "$COUNT" --size 96x64 --prefix library
"$BUILD_DIR"/bench/bench_library "$CORPUS" --rounds "$ROUNDS" --assets "$ASSETS"
