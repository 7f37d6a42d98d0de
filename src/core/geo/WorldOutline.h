#pragma once

#include <QByteArray>
#include <QList>
#include <QPointF>
#include <QRectF>

#include <memory>

namespace tagmoor {

// The world outline of Natural Earth at 1:50 million: land rings to fill and the coast and
// border lines, in degrees (x longitude, y latitude). Immutable once loaded.
struct WorldOutline {
    struct Line {
        QList<QPointF> points;
        QRectF bounds;
        bool isBorder = false;
    };
    QList<Line> land;  // closed rings
    QList<Line> lines; // coasts and borders

    static std::shared_ptr<const WorldOutline> fromData(const QByteArray& data);
    // The installed outline, read once per process; null when it is missing.
    static std::shared_ptr<const WorldOutline> shared();
};

} // namespace tagmoor
