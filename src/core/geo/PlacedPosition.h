#pragma once

#include <QDateTime>
#include <QHash>
#include <QString>

#include <optional>

namespace tagmoor {

// Where a photo was put (from a track, or moved by hand): signed degrees, the height where
// known, and the moment of the place in UTC when it came from a track.
struct PlacedPosition {
    double latitude = 0;
    double longitude = 0;
    std::optional<double> elevation;
    QDateTime utc;

    bool operator==(const PlacedPosition&) const = default;
};

// The placed photos of a list, by path.
using PlacedPositions = QHash<QString, PlacedPosition>;

} // namespace tagmoor
