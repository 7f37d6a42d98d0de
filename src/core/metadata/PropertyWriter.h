#pragma once

#include <QStringList>
#include <QVariantMap>

namespace Exiv2 {
class Image;
}

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
};

} // namespace tagmoor
