#!/usr/bin/env bash
# Renders the application icon at the hicolor theme's sizes from packaging/tagmoor.svg.
# The PNGs are committed, so a build needs no SVG renderer; run this after changing the SVG.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
for size in 16 22 24 32 48 64 128 256 512; do
  rsvg-convert -w "$size" -h "$size" "$here/../tagmoor.svg" -o "$here/tagmoor-$size.png"
done
