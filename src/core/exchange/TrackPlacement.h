#pragma once

#include "geo/GpxTrack.h"
#include "geo/PlacedPosition.h"
#include "geo/TrackMatch.h"
#include "model/CGImageProperties.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace tagmoor {

// Photos put on GPS tracks before anything is written: the state of the window's "Geotag from
// Track" panel. The tracks, the camera's zone, clock offset and largest gap give each photo its
// place; a photo moved by hand keeps the place it was moved to. Main thread only.
class TrackPlacement {
public:
    struct Photo {
        QString path;
        std::optional<QDateTime> captureTime;
        GeotagMatch match;
        // Where the user dropped the photo, which wins over the track.
        std::optional<PlacedPosition> moved;
    };

    // The photos to place, by their records.
    void setPhotos(const QList<CGImageProperties>& records);
    // Adds the fixes of GPX files to those loaded; gives one line per problem.
    QStringList loadTracks(const QStringList& paths);
    const GpxTracks& tracks() const { return m_tracks; }

    const GeotagOptions& options() const { return m_options; }
    void setOptions(const GeotagOptions& options);
    // The clock offset as typed ("+1:30", "-0:02:10"); false, and nothing changed, when the
    // text is none.
    bool setClockOffsetText(const QString& text);

    int count() const { return int(m_photos.size()); }
    const Photo& photo(int index) const { return m_photos[index]; }
    // Where the photo stands now: where it was moved, else its place on the track.
    std::optional<PlacedPosition> positionOf(int index) const;
    // The user dropped the photo at a place.
    void move(int index, double latitude, double longitude);

    // "IMG_1.jpg: taken at ..., after the track ends (...)" for each photo without a place.
    QStringList leftOut() const;
    // The places of the photos that have one, by path: what Apply hands to the run.
    PlacedPositions placed() const;

private:
    void rematch();

    QList<Photo> m_photos;
    GpxTracks m_tracks;
    GeotagOptions m_options;
};

} // namespace tagmoor
