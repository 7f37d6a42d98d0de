#!/usr/bin/env bash
# Installs what is missing, builds everything with warnings as errors, and runs all tests
# through ctest. This is what CI runs.
# Usage: scripts/run-tests.sh [--sanitize]
#   --sanitize  builds into build-asan/ with AddressSanitizer and UndefinedBehaviorSanitizer
#               (warnings stay warnings there: instrumentation changes what the optimiser sees)
#               and runs the whole suite there; any finding fails its test.
set -euo pipefail
cd "$(dirname "$0")/.."

if [ "${1:-}" != "--sanitize" ]; then
  TAGMOOR_WERROR=ON bash scripts/build.sh
  cd "${BUILD_DIR:-build}"
  QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j2 --timeout 300
  exit 0
fi

bash scripts/install-deps.sh
BUILD_DIR=${BUILD_DIR:-build-asan}
LAUNCHER=()
if command -v ccache >/dev/null 2>&1; then LAUNCHER=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache); fi
SPEED=()
for option in TAGMOOR_UNITY TAGMOOR_PCH TAGMOOR_LINKER; do
  if [ -n "${!option:-}" ]; then SPEED+=("-D$option=${!option}"); fi
done
# Leaks are checked; what Qt, fontconfig and the other system libraries keep until exit is
# listed in the suppressions file. The options apply to the build too, which runs the test
# binary to list its cases.
export ASAN_OPTIONS=detect_leaks=1:check_initialization_order=1:strict_init_order=1
export LSAN_OPTIONS=suppressions=$PWD/scripts/sanitizer-suppressions.txt:print_suppressions=0
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
cmake -S . -B "$BUILD_DIR" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTAGMOOR_SANITIZE=ON \
  -DTAGMOOR_BUILD_BENCH=OFF "${LAUNCHER[@]}" "${SPEED[@]}" >/dev/null
cmake --build "$BUILD_DIR" -j"${JOBS:-2}"
cd "$BUILD_DIR"
# Instrumented code runs a few times slower, hence the longer limit.
QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j2 --timeout 900
