#!/usr/bin/env bash
# Editor benchmark: 10,000 marked photos (the samples' records repeated) on the home screen
# offscreen. Targets: marking all and showing the merge under 100 ms on the main thread;
# no key stroke over 16 ms while typing with every photo marked.
set -euo pipefail
cd "$(dirname "$0")/.."
source bench/common.sh
bench_build bench_editor
QT_QPA_PLATFORM=offscreen "$BUILD_DIR"/bench/bench_editor ../shared/samples/formats "${1:-10000}"
