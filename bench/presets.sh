#!/usr/bin/env bash
# Preset store benchmark: COUNT presets (default 1,000). Targets: the store loads in under
# 100 ms at start; a save costs the main thread next to nothing (it runs on its own thread).
#   bench/presets.sh [COUNT] [ROUNDS]
set -euo pipefail
cd "$(dirname "$0")/.."
source bench/common.sh
bench_build bench_presets
"$BUILD_DIR"/bench/bench_presets "${1:-1000}" "${2:-5}"
