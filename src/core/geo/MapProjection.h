#pragma once

#include <QPointF>
#include <QSizeF>

namespace tagmoor {

// What a map shows: its centre and its span, in degrees.
struct MapRegion {
    double latitude = 0;
    double longitude = 0;
    double latitudeSpan = 0;
    double longitudeSpan = 0;

    bool isValid() const;
};

// The spherical Mercator projection of web map tiles: at zoom z the world is a square of
// 256 * 2^z pixels, x growing east from 180 W and y growing south from 85.0511 N.
namespace MapProjection {

constexpr int kTileSize = 256;
constexpr double kMaxLatitude = 85.0511287798066;
constexpr int kMinZoom = 1;
constexpr int kMaxZoom = 18;

// The position in world pixels at a zoom (latitude clamped to what the projection shows).
QPointF toWorld(double latitude, double longitude, int zoom);
// The position of a world pixel; x is wrapped into [-180, 180).
QPointF toLatLon(QPointF world, int zoom); // x longitude, y latitude

// The largest zoom at which `region` fits a view of `viewSize` pixels.
int zoomThatFits(const MapRegion& region, QSizeF viewSize);
// The region that a view of `viewSize` shows at the zoom that fits `region`, centred alike;
// invalid input gives an invalid region.
MapRegion regionThatFits(const MapRegion& region, QSizeF viewSize);

} // namespace MapProjection

} // namespace tagmoor
