#!/usr/bin/env bash
# Installs what is missing, builds everything, and runs all tests through ctest.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/build.sh
cd "${BUILD_DIR:-build}"
QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j2 --timeout 300
