// The first half of loading: the key-list rows as the bridge casts them to the key table's
// kinds, with the coordinates signed by their references.
#include "foundation/ValueForm.h"
#include "metadata/FieldSetReading.h"
#include "metadata/PropertyLoading.h"

#include <cmath>

namespace tagmoor {

namespace {

// Signs a coordinate by its reference, or drops both halves when one is missing. The
// described rule: "N" or "E" positive, anything else the negated value, narrowed to a float.
// The standard form keeps the double, and a reference that names no hemisphere leaves the
// sign the value has.
void signCoordinate(MetadataFieldSet& set, int valueRow, int refRow, const QString& positive,
                    const QString& negative) {
    const std::optional<double> degrees = set.exif[valueRow].float64();
    const std::optional<QString> ref = set.exif[refRow].text();
    if (!degrees || !ref) {
        set.exif[valueRow].clear();
        set.exif[refRow].clear();
        return;
    }
    if (!isStandardForm()) {
        const double signedDegrees = *ref == positive ? std::fabs(*degrees) : 0.0 - *degrees;
        set.exif[valueRow] = float(signedDegrees);
        return;
    }
    const QString hemisphere = ref->trimmed().toUpper();
    if (hemisphere.startsWith(positive))
        set.exif[valueRow] = std::fabs(*degrees);
    else if (hemisphere.startsWith(negative))
        set.exif[valueRow] = -std::fabs(*degrees);
}

void signCoordinates(MetadataFieldSet& set) {
    signCoordinate(set, exifrow::GPSLatitude, exifrow::GPSLatitudeRef, QStringLiteral("N"),
                   QStringLiteral("S"));
    signCoordinate(set, exifrow::GPSLongitude, exifrow::GPSLongitudeRef, QStringLiteral("E"),
                   QStringLiteral("W"));
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
    const auto outcome = MetadataBlockReader::readKeyListRows(path, set, options);
    if (outcome != MetadataBlockReader::Outcome::Read)
        return {};
    signCoordinates(set);
    return set;
}

MetadataFieldSet readMetadataFieldSet(const Exiv2::Image& image) {
    MetadataFieldSet set;
    MetadataBlockReader::readKeyListRows(image, set);
    signCoordinates(set);
    return set;
}

MetadataFieldSet readMetadataDates(const Exiv2::Image& image) {
    MetadataFieldSet set;
    MetadataBlockReader::readKeyListRows(image, set, /*datesOnly=*/true);
    return set;
}

} // namespace tagmoor
