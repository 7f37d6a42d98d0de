#include "exchange/GeotagValues.h"

#include "batch/FormSnapshot.h"
#include "batch/RunValues.h"
#include "exchange/CsvImport.h"
#include "metadata/PropertyLoading.h"

#include <cmath>

namespace tagmoor {

namespace {

std::optional<QDateTime> dateOf(const PropertyValue& value) {
    if (const auto date = value.date(); date && date->isValid())
        return *date;
    if (const auto text = value.text(); text && !text->trimmed().isEmpty())
        return parseMetadataDate(text->trimmed());
    return std::nullopt;
}

QString number(double value) {
    return QString::number(value, 'f', 8);
}

} // namespace

GeotagValues::GeotagValues(GpxTracks tracks, GeotagOptions options)
    : m_tracks(std::move(tracks)), m_options(std::move(options)) {}

std::optional<QDateTime> GeotagValues::captureTime(const CGImageProperties& record) {
    if (!record.exifProperties)
        return std::nullopt;
    if (auto original = dateOf(record.exifProperties->dateTimeOriginal))
        return original;
    return dateOf(record.createDate);
}

GeotagMatch GeotagValues::match(const CGImageProperties& record) const {
    return matchOnTrack(m_tracks.points, captureTime(record).value_or(QDateTime()), m_options);
}

void GeotagValues::adjust(const CGImageProperties& record, RunValues& values) const {
    const GeotagMatch place = match(record);
    if (place.matched())
        placeInto(values, {place.latitude, place.longitude, place.elevation, place.utc});
}

void GeotagValues::placeInto(RunValues& values, const PlacedPosition& place) {
    CsvImport::applyCell(values, Field::GPSLatitude, number(std::fabs(place.latitude)));
    CsvImport::applyCell(values, Field::GPSLatitudeRef,
                         place.latitude < 0 ? QStringLiteral("S") : QStringLiteral("N"));
    CsvImport::applyCell(values, Field::GPSLongitude, number(std::fabs(place.longitude)));
    CsvImport::applyCell(values, Field::GPSLongitudeRef,
                         place.longitude < 0 ? QStringLiteral("W") : QStringLiteral("E"));
    if (place.elevation) {
        CsvImport::applyCell(values, Field::GPSAltitude,
                             QString::number(std::fabs(*place.elevation), 'f', 2));
        CsvImport::applyCell(values, Field::GPSAltitudeRef,
                             *place.elevation < 0 ? QStringLiteral("1") : QStringLiteral("0"));
    }
    FormSnapshot::signCoordinates(values.editedProperties);
    if (place.utc.isValid())
        values.extras.gpsTime = place.utc;
}

void PlacedPhotoValues::adjust(const CGImageProperties& record, RunValues& values) const {
    if (!record.url)
        return;
    const auto place = m_positions.constFind(record.path());
    if (place != m_positions.cend())
        GeotagValues::placeInto(values, *place);
}

} // namespace tagmoor
