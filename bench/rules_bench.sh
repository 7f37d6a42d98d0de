#!/usr/bin/env bash
# Times the date and rename rules per call. Usage: bench/rules_bench.sh [calls]
set -euo pipefail
cd "$(dirname "$0")/.."
BUILD_DIR=${BUILD_DIR:-build-release}
if [ ! -d "$BUILD_DIR" ]; then
  cmake -S . -B "$BUILD_DIR" -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
fi
cmake --build "$BUILD_DIR" --target rules_bench >/dev/null
TZ=${TZ:-UTC} "$BUILD_DIR/bench/rules_bench" "${1:-20000}"
