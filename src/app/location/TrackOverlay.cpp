#include "app/location/TrackOverlay.h"

#include "exchange/TrackPlacement.h"

#include <QLineF>
#include <QPainter>
#include <QPainterPath>

namespace tagmoor {

namespace {

constexpr double kDotRadius = 6;
constexpr double kGrabRadius = 10;
const QColor kTrackColour(200, 40, 120);
const QColor kPhotoColour(255, 160, 0);
const QColor kMovedColour(40, 160, 255);

} // namespace

TrackOverlay::TrackOverlay(const TrackPlacement& placement,
                           std::function<void(int, double, double)> moved)
    : m_placement(placement), m_moved(std::move(moved)) {}

void TrackOverlay::paint(QPainter& painter, const MapView& map) {
    // One line through the fixes; points closer than a pixel to the last one drawn are left
    // out, so that a long track stays quick to draw.
    QPainterPath line;
    QPointF last;
    bool first = true;
    for (const TrackPoint& fix : m_placement.tracks().points) {
        const QPointF point = map.pointOf(fix.latitude, fix.longitude);
        if (first) {
            line.moveTo(point);
            first = false;
        } else if (QLineF(last, point).length() >= 1.0) {
            line.lineTo(point);
        } else {
            continue;
        }
        last = point;
    }
    painter.setPen(QPen(kTrackColour, 2.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(line);

    for (int i = 0; i < m_placement.count(); ++i) {
        const auto position = m_placement.positionOf(i);
        if (!position)
            continue;
        const QPointF point =
            m_dragged == i ? m_dragPoint : map.pointOf(position->latitude, position->longitude);
        painter.setPen(QPen(Qt::white, 2));
        painter.setBrush(m_placement.photo(i).moved ? kMovedColour : kPhotoColour);
        painter.drawEllipse(point, kDotRadius, kDotRadius);
    }
}

bool TrackOverlay::press(QPointF point, const MapView& map) {
    // The topmost dot under the mouse: the last one drawn.
    for (int i = m_placement.count() - 1; i >= 0; --i) {
        const auto position = m_placement.positionOf(i);
        if (position &&
            QLineF(map.pointOf(position->latitude, position->longitude), point).length() <=
                kGrabRadius) {
            m_dragged = i;
            m_dragPoint = m_pressPoint = point;
            return true;
        }
    }
    return false;
}

void TrackOverlay::drag(QPointF point, const MapView&) {
    m_dragPoint = point;
}

void TrackOverlay::release(QPointF point, const MapView& map) {
    if (!m_dragged)
        return;
    const int index = *m_dragged;
    m_dragged.reset();
    // A click on a dot leaves the photo where it was.
    if (QLineF(m_pressPoint, point).length() <= 3)
        return;
    const QPointF where = map.positionAt(point);
    m_moved(index, where.y(), where.x());
}

} // namespace tagmoor
