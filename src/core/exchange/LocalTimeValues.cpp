#include "exchange/LocalTimeValues.h"

#include "batch/RunValues.h"
#include "dates/ZoneClock.h"
#include "exchange/GeotagValues.h"
#include "geo/TimeZoneMap.h"

#include <QCoreApplication>

#include <cmath>
#include <tuple>

namespace tagmoor {

namespace {

// A coordinate signed by its reference ("S" and "W" are negative), as the photo holds it.
std::optional<double> signedCoordinate(const PropertyValue& degrees, const PropertyValue& reference,
                                       QLatin1String negative) {
    const std::optional<double> value = degrees.real();
    if (!value || !std::isfinite(*value))
        return std::nullopt;
    const bool flip =
        reference.text().value_or(QString()).trimmed().compare(negative, Qt::CaseInsensitive) == 0;
    return flip ? -std::fabs(*value) : *value;
}

std::pair<std::optional<double>, std::optional<double>>
positionOf(const CGImageProperties& record) {
    if (!record.gpsProperties)
        return {};
    const GPSProperties& gps = *record.gpsProperties;
    return {signedCoordinate(gps.latitude, gps.latitudeRef, QLatin1String("S")),
            signedCoordinate(gps.longitude, gps.longitudeRef, QLatin1String("W"))};
}

} // namespace

LocalTimeValues::LocalTimeValues(QString cameraZone) : m_cameraZone(std::move(cameraZone)) {}

LocalTimeValues::Place LocalTimeValues::placeOf(const CGImageProperties& record,
                                                const RunValues& values) const {
    Place place;
    // The run's coordinates are signed already (see FormSnapshot::signCoordinates).
    const bool runPlaces = values.fieldEditedFlags.test(Field::GPSLatitude) &&
                           values.fieldEditedFlags.test(Field::GPSLongitude) &&
                           values.editedProperties.gpsProperties;
    if (runPlaces) {
        place.latitude = values.editedProperties.gpsProperties->latitude.real();
        place.longitude = values.editedProperties.gpsProperties->longitude.real();
    } else {
        std::tie(place.latitude, place.longitude) = positionOf(record);
    }
    if (!place.latitude || !place.longitude)
        return place;
    place.zone = TimeZoneMap::zoneAt(*place.latitude, *place.longitude);
    if (!place.zone)
        return place;
    if (const auto taken = GeotagValues::captureTime(record)) {
        const QDateTime clock(taken->date(), taken->time(), QTimeZone::utc());
        place.cameraOffset = ZoneClock::offsetAtWallClock(m_cameraZone, clock);
        const QDateTime moment = clock.addSecs(-*place.cameraOffset);
        place.placeOffset = ZoneClock::offsetAtMoment(*place.zone, moment);
    }
    return place;
}

QString LocalTimeValues::Place::reason() const {
    if (!latitude || !longitude)
        return QCoreApplication::translate("LocalTime", "no GPS position");
    if (!zone)
        return QCoreApplication::translate("LocalTime", "no time zone found for %1, %2")
            .arg(QString::number(*latitude, 'f', 5), QString::number(*longitude, 'f', 5));
    return {};
}

QString LocalTimeValues::Place::shiftText(const QString& cameraZone) const {
    if (!zone)
        return reason();
    if (!cameraOffset || !placeOffset)
        return QCoreApplication::translate("LocalTime", "%1 (no capture date to shift)").arg(*zone);
    return QCoreApplication::translate("LocalTime", "%1 (%2), dates move by %3 from %4 (%5)")
        .arg(*zone, ZoneClock::offsetText(*placeOffset),
             ZoneClock::offsetText(*placeOffset - *cameraOffset), cameraZone,
             ZoneClock::offsetText(*cameraOffset));
}

void LocalTimeValues::adjust(const CGImageProperties& record, RunValues& values) const {
    const Place place = placeOf(record, values);
    if (place.zone)
        values.extras.datesZone = DatesZone{*place.zone, m_cameraZone};
}

} // namespace tagmoor
