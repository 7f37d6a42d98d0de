#!/usr/bin/env bash
# Fails, listing the files, when a C++ source of the project is not clean under .clang-format.
set -uo pipefail
cd "$(dirname "$0")/.."
formatter=${CLANG_FORMAT:-clang-format}
if ! command -v "$formatter" >/dev/null 2>&1; then
  echo "clang-format is missing ($formatter): install it (scripts/install-deps.sh does)"
  exit 1
fi
# Many files to one formatter, two formatters at a time: starting it costs more than a file.
# Each unclean file is named in the formatter's own messages ("FILE:LINE:COL: error: ...").
folders=()
for folder in src tests bench fuzz; do [ -d "$folder" ] && folders+=("$folder"); done
report=$(find "${folders[@]}" -type f \( -name '*.cpp' -o -name '*.h' \) -print0 |
  xargs -0 -r -n 64 -P 2 "$formatter" --dry-run -Werror 2>&1 >/dev/null)
status=$?
mapfile -t unclean < <(sed -nE 's/^(.+):[0-9]+:[0-9]+: (error|warning): .*/\1/p' <<<"$report" | sort -u)
if [ ${#unclean[@]} -gt 0 ]; then
  echo "Not clean under .clang-format (run: clang-format -i FILE):"
  printf '  %s\n' "${unclean[@]}"
  exit 1
fi
if [ "$status" -ne 0 ]; then
  echo "clang-format failed:"
  echo "$report"
  exit 1
fi
echo "All sources clean under .clang-format"
