#pragma once

#include <QStringList>
#include <QVariantMap>

#include <string>

namespace Exiv2 {
class Image;
class ExifData;
} // namespace Exiv2

namespace tagmoor {

// Lays the property dictionary over an open image's metadata, block by block: Exif rows in
// key-list order then the Exif erase list, then IPTC, then XMP, each block set back on the image.
// Integer, rational and GPS rows are written even without a value (as zero); erasing comes after
// writing. Key texts are the given lists', addressed by row. Throws what Exiv2 throws, which ends
// the remaining blocks. Writes nothing to the file itself.
class PropertyWriter {
public:
    struct KeyNames {
        const QStringList& exif;
        const QStringList& iptc;
        const QStringList& xmp;
    };
    static void apply(Exiv2::Image& image, const QVariantMap& properties, const KeyNames& keys,
                      const QStringList& exifErase, const QStringList& iptcErase,
                      const QStringList& xmpErase);

    // The GPS rule for one coordinate: signed degrees become "d/1 m/1 s/1" in a datum made
    // afresh under `key`, and the hemisphere letter goes to `refKey`.
    static void writeGpsCoordinate(Exiv2::ExifData& exifData, const std::string& key,
                                   const std::string& refKey, double value, bool latitude);
    // The same for the latitude or longitude row, its hemisphere going to the matching
    // reference row of `exifKeyNames`.
    static void writeGpsField(Exiv2::ExifData& exifData, const std::string& key,
                              const QStringList& exifKeyNames, bool latitude, double value);
};

} // namespace tagmoor
