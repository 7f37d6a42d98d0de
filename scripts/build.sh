#!/usr/bin/env bash
# Configures and builds Tagmoor into build/ (Release with debug info).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
BUILD_DIR=${BUILD_DIR:-build}
LAUNCHER=()
if command -v ccache >/dev/null 2>&1; then LAUNCHER=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache); fi
# TAGMOOR_WERROR=ON (as scripts/run-tests.sh sets it for CI) turns warnings into errors.
cmake -S . -B "$BUILD_DIR" -G Ninja -DCMAKE_BUILD_TYPE=${BUILD_TYPE:-RelWithDebInfo} \
  -DTAGMOOR_WERROR=${TAGMOOR_WERROR:-OFF} "${LAUNCHER[@]}" >/dev/null
cmake --build "$BUILD_DIR" "$@"
