#!/usr/bin/env bash
# A batch from the window against the same batch through tagmoor-cli apply, on COUNT
# camera-size JPEGs (default 1000). Targets: the window's run at most 1.1x the command line's;
# no stall of the window's event loop over 50 ms.
set -euo pipefail
cd "$(dirname "$0")/.."
COUNT=${1:-1000}
source bench/common.sh
bench_build make_corpus bench_window_batch tagmoor-cli
CORPUS=bench/corpus-camera-$COUNT
bench_corpus "$CORPUS" "$COUNT" >/dev/null
cat "$CORPUS"/*.jpg >/dev/null
WORK=$(mktemp -d "bench/corpus-out.XXXXXX")
trap 'rm -rf "$WORK"' EXIT
QT_QPA_PLATFORM=offscreen "$BUILD_DIR"/bench/bench_window_batch "$CORPUS" "$WORK" \
  "$BUILD_DIR/src/cli/tagmoor-cli" 2>/dev/null
