#!/usr/bin/env bash
# Builds the libFuzzer targets with clang, AddressSanitizer and UndefinedBehaviorSanitizer into
# build-fuzz/ and runs one of them for a while.
# Usage: scripts/fuzz.sh fuzz_load|fuzz_write SECONDS [extra libFuzzer options]
# The corpus grows in fuzz/corpus/TARGET, seeded with the sample photos on every run; crashing,
# hanging and memory-hungry inputs land in fuzz/findings/TARGET. Both folders are not committed.
# A finding worth keeping goes to tests/data/fuzz/ under a name that says what it was.
set -euo pipefail
cd "$(dirname "$0")/.."

TARGET=${1:-}
SECONDS_TO_RUN=${2:-}
if [[ ! "$TARGET" =~ ^fuzz_(load|write)$ || ! "$SECONDS_TO_RUN" =~ ^[0-9]+$ ]]; then
  echo "usage: scripts/fuzz.sh fuzz_load|fuzz_write SECONDS [libFuzzer options]" >&2
  exit 2
fi
shift 2

bash scripts/install-deps.sh clang libclang-rt-dev libomp-dev

BUILD_DIR=${BUILD_DIR:-build-fuzz}
LAUNCHER=()
if command -v ccache >/dev/null 2>&1; then LAUNCHER=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache); fi
cmake -S . -B "$BUILD_DIR" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCMAKE_CXX_COMPILER=clang++ -DTAGMOOR_FUZZ=ON \
  -DTAGMOOR_BUILD_TESTS=OFF -DTAGMOOR_BUILD_BENCH=OFF "${LAUNCHER[@]}" >/dev/null
cmake --build "$BUILD_DIR" --target "$TARGET" -j"${JOBS:-2}"

CORPUS=fuzz/corpus/$TARGET
FINDINGS=fuzz/findings/$TARGET
SAMPLES=${TAGMOOR_SAMPLES:-../shared/samples}
mkdir -p "$CORPUS" "$FINDINGS"
cp -n "$SAMPLES"/formats/* "$SAMPLES"/malformed/* "$CORPUS"/ 2>/dev/null || true
chmod u+w "$CORPUS"/*

export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=0:allocator_may_return_null=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
# One job in a forked child, which goes on after a finding, so one run collects them all.
exec "$BUILD_DIR/fuzz/$TARGET" "$CORPUS" \
  -artifact_prefix="$FINDINGS/" -max_total_time="$SECONDS_TO_RUN" \
  -timeout=10 -rss_limit_mb=2048 -max_len=262144 \
  -fork=1 -ignore_crashes=1 -ignore_timeouts=1 -ignore_ooms=1 \
  -print_final_stats=1 -print_funcs=0 "$@"
