#!/usr/bin/env bash
# Times the date and rename rules per call. Usage: bench/rules_bench.sh [calls]
set -euo pipefail
cd "$(dirname "$0")/.."
source bench/common.sh
bench_build rules_bench
TZ=${TZ:-UTC} "$BUILD_DIR/bench/rules_bench" "${1:-20000}"
