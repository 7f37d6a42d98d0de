#!/usr/bin/env bash
# Configures and builds Tagmoor into build/ (Release with debug info).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
BUILD_DIR=${BUILD_DIR:-build}
LAUNCHER=()
if command -v ccache >/dev/null 2>&1; then LAUNCHER=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache); fi
# Debug info would put the build folder into every cache key; without it, each checkout of the
# sources (a second worktree, a fresh clone) reuses the objects the others compiled.
export CCACHE_NOHASHDIR=${CCACHE_NOHASHDIR:-1}
# TAGMOOR_WERROR=ON (as scripts/run-tests.sh sets it for CI) turns warnings into errors.
# TAGMOOR_UNITY=OFF and TAGMOOR_PCH=OFF give the plain build of one object per file, which
# rebuilds less after a small edit and shows a missing include; the choice stays in the
# build folder until given again.
SPEED=()
for option in TAGMOOR_UNITY TAGMOOR_PCH TAGMOOR_LINKER; do
  if [ -n "${!option:-}" ]; then SPEED+=("-D$option=${!option}"); fi
done
cmake -S . -B "$BUILD_DIR" -G Ninja -DCMAKE_BUILD_TYPE=${BUILD_TYPE:-RelWithDebInfo} \
  -DTAGMOOR_WERROR=${TAGMOOR_WERROR:-OFF} "${LAUNCHER[@]}" "${SPEED[@]}" >/dev/null
cmake --build "$BUILD_DIR" "$@"
