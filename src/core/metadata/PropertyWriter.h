#pragma once

#include <string>

namespace Exiv2 {
class Image;
class ExifData;
class IptcData;
class XmpData;
} // namespace Exiv2

namespace tagmoor {

class ErasedRows;
class WrittenProperties;

// Lays the written values over an open image's metadata, block by block: Exif rows in
// key-list order then the erased Exif rows, then IPTC, then XMP, each block set back on the
// image. Integer, rational and GPS rows are written even without a value (as zero); erasing
// comes after writing. Throws what Exiv2 throws, which ends the remaining blocks. Writes nothing
// to the file itself.
class PropertyWriter {
public:
    static void apply(Exiv2::Image& image, const WrittenProperties& written,
                      const ErasedRows& erased);

    // Erases the first datum under the key of each erased row of the block, in the rows' order.
    static void eraseRows(Exiv2::ExifData& data, const ErasedRows& erased);
    static void eraseRows(Exiv2::IptcData& data, const ErasedRows& erased);
    static void eraseRows(Exiv2::XmpData& data, const ErasedRows& erased);

    // The GPS rule for one coordinate: signed degrees become "d/1 m/1 s/1" in a datum made
    // afresh under `key`, and the hemisphere letter goes to `refKey`.
    static void writeGpsCoordinate(Exiv2::ExifData& exifData, const std::string& key,
                                   const std::string& refKey, double value, bool latitude);
    // The same for the latitude or longitude row, its hemisphere going to the matching
    // reference row.
    static void writeGpsField(Exiv2::ExifData& exifData, const std::string& key, bool latitude,
                              double value);
};

} // namespace tagmoor
