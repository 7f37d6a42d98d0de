#!/usr/bin/env bash
# Paste Metadata... onto COUNT photos (default 10,000) in the real home screen: eight fields and
# keywords copied from one photo and pasted onto all, then the list exported as a metadata table
# and that table imported back. Target: no event-loop gap over 50 ms.
#   bench/paste.sh [COUNT]
set -euo pipefail
cd "$(dirname "$0")/.."
COUNT=${1:-10000}
source bench/common.sh
bench_build make_corpus bench_paste
CORPUS=bench/corpus-paste-$COUNT
bench_corpus "$CORPUS" "$COUNT" --size 96x64 --prefix paste >/dev/null
QT_QPA_PLATFORM=offscreen "$BUILD_DIR"/bench/bench_paste "$CORPUS" 2>/dev/null
