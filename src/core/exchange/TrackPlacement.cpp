#include "exchange/TrackPlacement.h"

#include "exchange/GeotagValues.h"

#include <QFileInfo>

#include <algorithm>

namespace tagmoor {

void TrackPlacement::setPhotos(const QList<CGImageProperties>& records) {
    m_photos.clear();
    for (const CGImageProperties& record : records) {
        if (!record.url)
            continue;
        m_photos.push_back({record.path(), GeotagValues::captureTime(record), {}, {}});
    }
    rematch();
}

QStringList TrackPlacement::loadTracks(const QStringList& paths) {
    GpxTracks loaded = loadGpxFiles(paths);
    m_tracks.points += loaded.points;
    std::stable_sort(m_tracks.points.begin(), m_tracks.points.end(),
                     [](const TrackPoint& a, const TrackPoint& b) { return a.time < b.time; });
    m_tracks.problems += loaded.problems;
    rematch();
    return loaded.problems;
}

void TrackPlacement::setOptions(const GeotagOptions& options) {
    m_options = options;
    rematch();
}

bool TrackPlacement::setClockOffsetText(const QString& text) {
    const std::optional<qint64> offset = parseClockOffset(text);
    if (!offset)
        return false;
    m_options.clockOffsetSeconds = *offset;
    rematch();
    return true;
}

void TrackPlacement::rematch() {
    for (Photo& photo : m_photos)
        photo.match =
            matchOnTrack(m_tracks.points, photo.captureTime.value_or(QDateTime()), m_options);
}

std::optional<PlacedPosition> TrackPlacement::positionOf(int index) const {
    const Photo& photo = m_photos[index];
    if (photo.moved)
        return photo.moved;
    if (!photo.match.matched())
        return std::nullopt;
    return PlacedPosition{photo.match.latitude, photo.match.longitude, photo.match.elevation,
                          photo.match.utc};
}

void TrackPlacement::move(int index, double latitude, double longitude) {
    Photo& photo = m_photos[index];
    // A photo moved off its place on the track keeps the track's moment, but not its height.
    const QDateTime utc = photo.match.matched() ? photo.match.utc : QDateTime();
    photo.moved = PlacedPosition{latitude, longitude, std::nullopt, utc};
}

QStringList TrackPlacement::leftOut() const {
    QStringList lines;
    for (const Photo& photo : m_photos) {
        if (!photo.moved && !photo.match.matched())
            lines << QFileInfo(photo.path).fileName() + QStringLiteral(": ") +
                         photo.match.reason(m_options);
    }
    return lines;
}

PlacedPositions TrackPlacement::placed() const {
    PlacedPositions out;
    for (int i = 0; i < count(); ++i) {
        if (const auto position = positionOf(i))
            out.insert(m_photos[i].path, *position);
    }
    return out;
}

} // namespace tagmoor
