#include "geo/MapProjection.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tagmoor {

namespace {
double worldSize(int zoom) {
    return MapProjection::kTileSize * std::ldexp(1.0, zoom);
}
} // namespace

bool MapRegion::isValid() const {
    return std::isfinite(latitude) && std::isfinite(longitude) && std::isfinite(latitudeSpan) &&
           std::isfinite(longitudeSpan);
}

QPointF MapProjection::toWorld(double latitude, double longitude, int zoom) {
    const double size = worldSize(zoom);
    const double lat = std::clamp(latitude, -kMaxLatitude, kMaxLatitude) * std::numbers::pi / 180;
    const double x = (longitude + 180) / 360 * size;
    const double y =
        (1 - std::log(std::tan(lat) + 1 / std::cos(lat)) / std::numbers::pi) / 2 * size;
    return {x, y};
}

QPointF MapProjection::toLatLon(QPointF world, int zoom) {
    const double size = worldSize(zoom);
    double longitude = world.x() / size * 360 - 180;
    longitude = std::fmod(longitude + 180, 360);
    if (longitude < 0)
        longitude += 360;
    longitude -= 180;
    const double n = std::numbers::pi * (1 - 2 * world.y() / size);
    const double latitude = std::atan(std::sinh(n)) * 180 / std::numbers::pi;
    return {longitude, latitude};
}

int MapProjection::zoomThatFits(const MapRegion& region, QSizeF viewSize) {
    if (!region.isValid() || viewSize.isEmpty())
        return kMinZoom;
    for (int zoom = kMaxZoom; zoom > kMinZoom; --zoom) {
        const QPointF a = toWorld(region.latitude + region.latitudeSpan / 2,
                                  region.longitude - region.longitudeSpan / 2, zoom);
        const QPointF b = toWorld(region.latitude - region.latitudeSpan / 2,
                                  region.longitude + region.longitudeSpan / 2, zoom);
        if (b.x() - a.x() <= viewSize.width() && b.y() - a.y() <= viewSize.height())
            return zoom;
    }
    return kMinZoom;
}

MapRegion MapProjection::regionThatFits(const MapRegion& region, QSizeF viewSize) {
    if (!region.isValid())
        return {NAN, NAN, NAN, NAN};
    const int zoom = zoomThatFits(region, viewSize);
    const QPointF centre = toWorld(region.latitude, region.longitude, zoom);
    const QPointF topLeft =
        toLatLon(centre - QPointF(viewSize.width(), viewSize.height()) / 2, zoom);
    const QPointF bottomRight =
        toLatLon(centre + QPointF(viewSize.width(), viewSize.height()) / 2, zoom);
    MapRegion fitted;
    fitted.latitude = region.latitude;
    fitted.longitude = region.longitude;
    fitted.latitudeSpan = topLeft.y() - bottomRight.y();
    fitted.longitudeSpan = viewSize.width() / worldSize(zoom) * 360;
    return fitted;
}

} // namespace tagmoor
