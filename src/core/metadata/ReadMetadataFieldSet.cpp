// The first half of loading: the key-list rows as the bridge casts them to the key table's
// kinds, with the coordinates signed by their references.
#include "metadata/FieldSetReading.h"
#include "metadata/PropertyLoading.h"

#include <cmath>

namespace tagmoor {

namespace {

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

} // namespace tagmoor
