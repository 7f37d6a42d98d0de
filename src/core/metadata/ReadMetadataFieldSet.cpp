// The first half of loading: the bridge's dictionaries cast row by row to the key table's
// kinds. A value of the wrong kind, or a number the kind can't hold exactly, stays absent.
#include "metadata/FieldSetReading.h"
#include "metadata/PropertyLoading.h"

#include <cmath>
#include <limits>

namespace tagmoor {

namespace {

// The bridge gives numbers as float, and GPS degrees as double.
std::optional<double> numberOf(const QVariant& v) {
    switch (v.metaType().id()) {
    case QMetaType::Float:
        return double(v.value<float>());
    case QMetaType::Double:
        return v.value<double>();
    default:
        return std::nullopt;
    }
}

bool isWhole(double d) {
    return std::isfinite(d) && std::trunc(d) == d;
}

PropertyValue castTo(ReadKind kind, const QVariant& v) {
    if (kind == ReadKind::Text || kind == ReadKind::DateText) {
        if (v.metaType().id() == QMetaType::QString)
            return v.toString();
        return {};
    }
    const std::optional<double> n = numberOf(v);
    if (!n)
        return {};
    const double d = *n;
    switch (kind) {
    case ReadKind::Int64:
        // 2^63 is the first double past the range.
        if (isWhole(d) && d >= -9223372036854775808.0 && d < 9223372036854775808.0)
            return qint64(d);
        return {};
    case ReadKind::UInt64:
        if (isWhole(d) && d >= 0 && d < 18446744073709551616.0)
            return quint64(d);
        return {};
    case ReadKind::UInt8:
        if (isWhole(d) && d >= 0 && d <= 255)
            return quint8(d);
        return {};
    case ReadKind::Float32:
        if (std::isnan(d) || double(float(d)) == d)
            return float(d);
        return {};
    case ReadKind::Float64:
        return d;
    case ReadKind::NotRead:
    case ReadKind::Text:
    case ReadKind::DateText:
        break;
    }
    return {};
}

// Signs a coordinate by its reference ("N" or "E" positive, anything else negative), or
// drops both halves when one is missing.
void signCoordinate(MetadataFieldSet& set, int valueRow, int refRow, const QString& positive) {
    const std::optional<double> degrees = set.exif[valueRow].float64();
    const std::optional<QString> ref = set.exif[refRow].text();
    if (!degrees || !ref) {
        set.exif[valueRow].clear();
        set.exif[refRow].clear();
        return;
    }
    const double signedDegrees = *ref == positive ? std::fabs(*degrees) : 0.0 - *degrees;
    set.exif[valueRow] = float(signedDegrees);
}

void signCoordinates(MetadataFieldSet& set) {
    signCoordinate(set, exifrow::GPSLatitude, exifrow::GPSLatitudeRef, QStringLiteral("N"));
    signCoordinate(set, exifrow::GPSLongitude, exifrow::GPSLongitudeRef, QStringLiteral("E"));
}

} // namespace

// The bridge's reading restricted to the key-list rows: the same values, in the same
// order, as taking them from readAllPropertiesFrom's dictionaries, without converting all
// the other tags (a camera's maker notes hold hundreds).
MetadataFieldSet readMetadataFieldSet(const QString& path) {
    return readMetadataFieldSet(path, MetadataBlockReader::Options{});
}

MetadataFieldSet readMetadataFieldSet(const QString& path,
                                      const MetadataBlockReader::Options& options) {
    MetadataFieldSet set;
    const auto outcome = MetadataBlockReader::readKeyListRows(
        path, [&](const KeyRow& row, QVariant&& value) { set.at(row) = castTo(row.read, value); },
        options);
    if (outcome != MetadataBlockReader::Outcome::Read)
        return {};
    signCoordinates(set);
    return set;
}

MetadataFieldSet readMetadataFieldSet(const Exiv2::Image& image) {
    MetadataFieldSet set;
    MetadataBlockReader::readKeyListRows(
        image, [&](const KeyRow& row, QVariant&& value) { set.at(row) = castTo(row.read, value); });
    signCoordinates(set);
    return set;
}

} // namespace tagmoor
