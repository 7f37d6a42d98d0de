#pragma once

#include "metadata/MetadataFieldSet.h"

#include <QString>
#include <QVariantMap>

namespace tagmoor {

// Lays the edited values over what the file at `path` holds now and gives the property
// dictionary for MetadataTest::setImagePropertiesAll ("exif", "iptc", "xmp", always all three).
QVariantMap mergeForWriting(const MetadataFieldSet& editedFields, const QString& path);

// The same over the values `inFile` that the file holds.
QVariantMap mergeForWriting(const MetadataFieldSet& editedFields, const MetadataFieldSet& inFile);

} // namespace tagmoor
