#pragma once

#include "batch/PhotoValues.h"

#include <QDateTime>
#include <QString>

#include <optional>

namespace tagmoor {

// "Shift to the local time of the place": each photo with a position gets the zone of that
// place, found offline, and its dates move from the camera's zone to it. The position is the
// one the run gives the photo (a position from a track or the form comes first), else the
// photo's own. A photo without one keeps its dates.
class LocalTimeValues : public PhotoValues {
public:
    // `cameraZone`: the ICU ID of the zone the camera's clock was set to.
    explicit LocalTimeValues(QString cameraZone);

    // Where a photo was taken and what that does to its dates.
    struct Place {
        std::optional<double> latitude;
        std::optional<double> longitude;
        // The place's zone; none when the photo has no position or no zone was found.
        std::optional<QString> zone;
        // The camera's and the place's offsets at the photo's capture time, when it has one.
        std::optional<int> cameraOffset;
        std::optional<int> placeOffset;

        // Why the photo's dates stay as they are, for the list of those left out.
        QString reason() const;
        // "Asia/Kathmandu (+05:45), dates move by +05:45 from GMT (+00:00)".
        QString shiftText(const QString& cameraZone) const;
    };

    // The place of the photo of `record` under the run's values laid over it so far.
    Place placeOf(const CGImageProperties& record, const RunValues& values) const;
    const QString& cameraZone() const { return m_cameraZone; }

    void adjust(const CGImageProperties& record, RunValues& values) const override;

private:
    QString m_cameraZone;
};

} // namespace tagmoor
