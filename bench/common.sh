# Sourced by the benchmark scripts: one Release build in build-release/ (tests off) and a
# generated corpus that is made once and reused while its file count matches.
BUILD_DIR=${BUILD_DIR:-build-release}

# BENCH_NO_BUILD=1 takes the programs as $BUILD_DIR holds them.
bench_build() {
  if [ "${BENCH_NO_BUILD:-0}" = 1 ]; then return 0; fi
  bash scripts/install-deps.sh
  cmake -S . -B "$BUILD_DIR" -G Ninja -DCMAKE_BUILD_TYPE=Release -DTAGMOOR_BUILD_TESTS=OFF >/dev/null
  cmake --build "$BUILD_DIR" --target "$@" >/dev/null
}

# bench_corpus DIR COUNT [make_corpus options...]
bench_corpus() {
  local dir=$1 count=$2
  shift 2
  if [ "$(find "$dir" -maxdepth 1 -name '*.jpg' 2>/dev/null | wc -l)" -ne "$count" ]; then
    rm -rf "$dir"
    "$BUILD_DIR"/bench/make_corpus "$dir" "$count" "$@"
  fi
}
