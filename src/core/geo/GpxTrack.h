#pragma once

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace tagmoor {

// One fix of a GPS track: when (UTC), where, and how high when the receiver said.
struct TrackPoint {
    QDateTime time;
    double latitude = 0;
    double longitude = 0;
    std::optional<double> elevation;
    // Where the fix stands, for telling the user which points a position came from.
    QString file;
    int line = 0;
};

// The fixes of one or more GPX files, and what could not be read of them.
struct GpxTracks {
    // Every timed fix of every track and segment, in time order.
    QList<TrackPoint> points;
    // One line per problem: "FILE:LINE: what", so that a damaged file names its place.
    QStringList problems;
};

// Reads GPX 1.0 and 1.1 files: the points of tracks (trk/trkseg/trkpt), routes and lone
// waypoints that carry a time. A file that breaks off is told with its line; what was read
// before the break is kept, and the other files load as usual.
GpxTracks loadGpxFiles(const QStringList& paths);
GpxTracks readGpx(const QByteArray& bytes, const QString& name);

} // namespace tagmoor
