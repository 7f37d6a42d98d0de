#pragma once

#include "metadata/KeyTable.h"

#include <QString>
#include <QVariant>
#include <QVariantMap>

#include <functional>
#include <string>

namespace tagmoor {

// The reading half of the bridge, datum by datum: opens a file through Exiv2 (only when its
// content is a photo type that Tagmoor accepts), walks the Exif, IPTC and XMP blocks in file
// order and converts each value by the reading rules: numbers to 32-bit floats (GPS
// latitude and longitude to double degrees), texts to QString, other types skipped.
// No exception leaves it.
class MetadataBlockReader {
public:
    enum class Outcome { Read, UnencodablePath, Failed };

    // Whether a datum is wanted; deciding before converting spares the conversion.
    using Filter = std::function<bool(KeyBlock block, const std::string& key)>;
    // Receives every wanted datum that has a value of a kept type. A key may come again;
    // the later datum stands. On Failed the caller drops what it received.
    using Sink = std::function<void(KeyBlock block, const std::string& key, QVariant&& value)>;

    // An empty filter wants everything.
    static Outcome read(const QString& path, const Filter& wanted, const Sink& sink);

    // Exiv2's own data of each block as JSON-shaped text under "exif", "iptc" and "xmp";
    // what stands when Exiv2 fails midway.
    static QVariantMap readJsonShaped(const QString& path);
};

} // namespace tagmoor
