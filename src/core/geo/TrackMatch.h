#pragma once

#include "geo/GpxTrack.h"

#include <QDateTime>
#include <QTimeZone>

#include <optional>

namespace tagmoor {

// How photos are put on a track: the zone the camera's clock was set to, how far the camera's
// clock was off the receiver's, and the longest stretch between two fixes that is bridged.
struct GeotagOptions {
    QTimeZone cameraZone = QTimeZone::systemTimeZone();
    // Added to the camera's time to give the receiver's (a camera 2 minutes slow: +120).
    qint64 clockOffsetSeconds = 0;
    qint64 maxGapSeconds = 300;
};

// Where a photo lies on the track, or why it has no place there.
struct GeotagMatch {
    enum class Outcome { Matched, NoCaptureTime, NoTrack, BeforeTrack, AfterTrack, InGap };
    Outcome outcome = Outcome::NoCaptureTime;
    // The photo's moment on the receiver's clock, in UTC.
    QDateTime utc;
    double latitude = 0;
    double longitude = 0;
    std::optional<double> elevation;
    // The fixes the position was worked out from (the same one twice on a fix).
    TrackPoint before;
    TrackPoint after;

    bool matched() const { return outcome == Outcome::Matched; }
    // Why the photo has no position, for the list of those left out.
    QString reason(const GeotagOptions& options) const;
};

// The photo's capture time read in the camera's zone, moved by the clock offset, in UTC.
QDateTime receiverTime(const QDateTime& cameraTime, const GeotagOptions& options);

// Linear in time between the two fixes around the photo's moment. Outside the track, or
// between fixes further apart than the largest gap, the photo gets no position; a photo taken
// on a fix's second gets that fix.
GeotagMatch matchOnTrack(const QList<TrackPoint>& points, const QDateTime& cameraTime,
                         const GeotagOptions& options);

// "+1:30", "-0:02:10", "90" (seconds): the clock offset, or none for a text that is none.
std::optional<qint64> parseClockOffset(const QString& text);
// "Europe/Lisbon", "UTC", "+02:00", "-0530": the zone, or none for a text that is none.
std::optional<QTimeZone> parseZone(const QString& text);
// The offset that makes a photo whose camera said `cameraTime` read `trueTime` (both in the
// camera's zone): for "this photo of the receiver's screen was taken at 14:03:10".
qint64 clockOffsetFrom(const QDateTime& cameraTime, const QDateTime& trueTime);

} // namespace tagmoor
