#!/usr/bin/env bash
# Location benchmark: gazetteer questions (under 5 ms each), panning the outline map (frames
# under 16 ms) and the preview of a 24-megapixel JPEG (window at once, picture within 300 ms).
set -euo pipefail
cd "$(dirname "$0")/.."
source bench/common.sh
bench_build bench_location
QT_QPA_PLATFORM=offscreen "$BUILD_DIR"/bench/bench_location "${1:-1000}"
