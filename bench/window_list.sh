#!/usr/bin/env bash
# A long working list in the real home screen: COUNT small JPEGs (default 100,000) scanned with
# the grid shown, scrolled end to end, then Select All, grid and table, and Remove. Targets:
# peak RSS under 400 MB, no event-loop gap over 50 ms, each action under 100 ms.
#   bench/window_list.sh [COUNT]
set -euo pipefail
cd "$(dirname "$0")/.."
COUNT=${1:-100000}
source bench/common.sh
bench_build make_corpus bench_window_list
CORPUS=bench/corpus-list-$COUNT
bench_corpus "$CORPUS" "$COUNT" --size 96x64 --prefix list >/dev/null
QT_QPA_PLATFORM=offscreen "$BUILD_DIR"/bench/bench_window_list "$CORPUS" 2>/dev/null
