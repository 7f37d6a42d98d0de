#!/usr/bin/env bash
# Fails, listing the files, when a C++ source of the project is not clean under .clang-format.
set -uo pipefail
cd "$(dirname "$0")/.."
formatter=${CLANG_FORMAT:-clang-format}
if ! command -v "$formatter" >/dev/null 2>&1; then
  echo "clang-format is missing ($formatter): install it (scripts/install-deps.sh does)"
  exit 1
fi
unclean=()
while IFS= read -r -d '' file; do
  "$formatter" --dry-run -Werror "$file" >/dev/null 2>&1 || unclean+=("$file")
done < <(find src tests bench fuzz -type f \( -name '*.cpp' -o -name '*.h' \) -print0 2>/dev/null)
if [ ${#unclean[@]} -gt 0 ]; then
  echo "Not clean under .clang-format (run: clang-format -i FILE):"
  printf '  %s\n' "${unclean[@]}"
  exit 1
fi
echo "All sources clean under .clang-format"
