#pragma once

#include "app/location/MapView.h"

#include <functional>
#include <optional>

namespace tagmoor {

class TrackPlacement;

// The track and the placed photos over the map: the fixes as one line, each photo as a dot
// (a moved one in another colour). A dot can be dragged; where it is dropped goes to `moved`.
class TrackOverlay : public MapOverlay {
public:
    TrackOverlay(const TrackPlacement& placement,
                 std::function<void(int index, double latitude, double longitude)> moved);

    void paint(QPainter& painter, const MapView& map) override;
    bool press(QPointF point, const MapView& map) override;
    void drag(QPointF point, const MapView& map) override;
    void release(QPointF point, const MapView& map) override;

private:
    const TrackPlacement& m_placement;
    std::function<void(int, double, double)> m_moved;
    // The dot being dragged and where it is now.
    std::optional<int> m_dragged;
    QPointF m_dragPoint;
    QPointF m_pressPoint;
};

} // namespace tagmoor
