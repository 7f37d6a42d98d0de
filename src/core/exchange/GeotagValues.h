#pragma once

#include "batch/PhotoValues.h"
#include "geo/GpxTrack.h"
#include "geo/PlacedPosition.h"
#include "geo/TrackMatch.h"

#include <QDateTime>

#include <optional>

namespace tagmoor {

// Positions from GPS tracks as a run's per-photo values: each photo's capture time, read in the
// camera's zone and moved by the clock offset, finds its place on the tracks, and the place
// becomes the photo's GPS edits (latitude, longitude and, where the track has it, altitude),
// written like any typed edit. A photo without a place keeps its GPS tags.
class GeotagValues : public PhotoValues {
public:
    GeotagValues(GpxTracks tracks, GeotagOptions options);

    // The moment a photo was taken, as its camera said: DateTimeOriginal, else the digitised
    // date (CreateDate).
    static std::optional<QDateTime> captureTime(const CGImageProperties& record);

    GeotagMatch match(const CGImageProperties& record) const;
    const GeotagOptions& options() const { return m_options; }
    const GpxTracks& tracks() const { return m_tracks; }

    void adjust(const CGImageProperties& record, RunValues& values) const override;

    // Makes `place` the GPS edits of `values`: latitude, longitude, altitude where known, and
    // the moment of the place when it has one.
    static void placeInto(RunValues& values, const PlacedPosition& place);

private:
    GpxTracks m_tracks;
    GeotagOptions m_options;
};

// Positions put on photos by hand or from a track in the window, as a run's per-photo values.
class PlacedPhotoValues : public PhotoValues {
public:
    explicit PlacedPhotoValues(PlacedPositions positions) : m_positions(std::move(positions)) {}

    void adjust(const CGImageProperties& record, RunValues& values) const override;

private:
    PlacedPositions m_positions;
};

} // namespace tagmoor
