// Converts the time zone boundaries of the npm package @photostructure/tz-lookup (CC0) into
// data/time-zones.bin: the zone of every cell of a grid over the world, a row at a time in runs.
// Usage: node tz-data-convert.js NODE_MODULES_DIR OUT_DIR
// Format (little-endian), zlib with a big-endian length in front (what qUncompress reads):
//   "TMTZ", u16 version 1, u16 cells per degree, u16 zone count, zones as u16 length + UTF-8;
//   then 180 * cells-per-degree rows from the north pole southwards, each a u16 run count and
//   runs of (u16 zone, u16 length) from 180 degrees west eastwards.
'use strict';
const fs = require('fs');
const path = require('path');
const zlib = require('zlib');

const [modules, outDir] = process.argv.slice(2);
const lookup = require(path.join(modules, '@photostructure', 'tz-lookup'));
const PER_DEGREE = 100; // cells of 0.01 degrees, about 1 km at the equator

const zones = [];
const zoneIndex = new Map();
function indexOf(name) {
  if (!zoneIndex.has(name)) {
    zoneIndex.set(name, zones.length);
    zones.push(name);
  }
  return zoneIndex.get(name);
}

const rows = [];
const width = 360 * PER_DEGREE;
const height = 180 * PER_DEGREE;
for (let y = 0; y < height; ++y) {
  const lat = 90 - (y + 0.5) / PER_DEGREE;
  const runs = [];
  let current = -1, length = 0;
  for (let x = 0; x < width; ++x) {
    const lon = -180 + (x + 0.5) / PER_DEGREE;
    const zone = indexOf(lookup(lat, lon));
    if (zone === current && length < 0xffff) {
      ++length;
    } else {
      if (length > 0) runs.push([current, length]);
      current = zone;
      length = 1;
    }
  }
  runs.push([current, length]);
  rows.push(runs);
}

const parts = [];
const u16 = (v) => { const b = Buffer.alloc(2); b.writeUInt16LE(v); parts.push(b); };
parts.push(Buffer.from('TMTZ', 'latin1'));
u16(1);
u16(PER_DEGREE);
u16(zones.length);
for (const name of zones) {
  const b = Buffer.from(name, 'utf8');
  u16(b.length);
  parts.push(b);
}
for (const runs of rows) {
  u16(runs.length);
  for (const [zone, length] of runs) {
    u16(zone);
    u16(length);
  }
}
const body = Buffer.concat(parts);
const head = Buffer.alloc(4);
head.writeUInt32BE(body.length);
fs.writeFileSync(path.join(outDir, 'time-zones.bin'),
                 Buffer.concat([head, zlib.deflateSync(body, {level: 9})]));
console.log(`${zones.length} zones, ${rows.reduce((n, r) => n + r.length, 0)} runs`);
