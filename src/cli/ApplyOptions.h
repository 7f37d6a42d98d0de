#pragma once

#include "batch/RunValues.h"
#include "geo/TrackMatch.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace tagmoor::cli {

// The options of `tagmoor-cli apply`, mapped onto the values the screens would have set
// before a run: the form snapshot and its edit flags, the date rules, the rename rule, the
// mode and its clean boxes, the output folder and the collision preference.
struct ApplyOptions {
    RunValues values;
    QStringList inputs;
    bool dryRun = false;
    bool help = false;
    bool quiet = false;
    bool json = false;
    int threads = 1;
    // GPS tracks whose positions the photos take by their capture time (--geotag), with the
    // camera's zone and clock offset and the largest gap between fixes that is bridged.
    QStringList geotagTracks;
    GeotagOptions geotag;
    // Each photo's dates move from the camera's zone to that of the place it was taken
    // (--local-time-from-gps); the camera's zone as an ICU ID (--camera-zone, else the
    // system's).
    bool localTimeFromGps = false;
    QString cameraZoneId;

    // Parses the arguments after "apply"; on a bad argument gives nothing and sets `error`
    // to a message for the user.
    static std::optional<ApplyOptions> parse(const QStringList& args, QString* error);

    static QString helpText();
};

} // namespace tagmoor::cli
