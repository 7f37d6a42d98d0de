#!/usr/bin/env bash
# Geotag benchmark: 10,000 photos matched against a track of 100,000 fixes in under 100 ms,
# against a plain linear scan in the same run. Usage: bench/geotag.sh [photos] [fixes]
set -euo pipefail
cd "$(dirname "$0")/.."
source bench/common.sh
bench_build bench_geotag
"$BUILD_DIR"/bench/bench_geotag "${1:-10000}" "${2:-100000}"
