// Stripping whole metadata groups from a file, through the same safe write as the writer.
#include "metadata/MetadataTest.h"

#include "metadata/SafeMetadataEdit.h"

#include <QFile>

#include <exiv2/exiv2.hpp>

namespace tagmoor {

namespace {

void eraseFirst(Exiv2::ExifData& exifData, const char* key) {
    const auto found = exifData.findKey(Exiv2::ExifKey(key));
    if (found != exifData.end())
        exifData.erase(found);
}

} // namespace

void MetadataTest::cleanMetadata(const QString& path, bool iptc, bool exif, bool xmp, bool gps,
                                 bool comment, const std::optional<FileStamp>& expected) const {
    if (QFile::decodeName(QFile::encodeName(path)) != path)
        return;
    try {
        // Written even when nothing is chosen: the file then keeps its metadata unchanged.
        SafeMetadataEdit::run(path, expected, [&](Exiv2::Image& image) {
            if (iptc)
                image.clearIptcData();
            if (xmp)
                image.clearXmpData();
            if (exif)
                image.clearExifData();
            if (comment) {
                Exiv2::ExifData exifData = image.exifData();
                eraseFirst(exifData, "Exif.Photo.UserComment");
                image.setExifData(exifData);
            }
            if (gps) {
                Exiv2::ExifData exifData = image.exifData();
                for (const char* key :
                     {"Exif.GPSInfo.GPSLatitude", "Exif.GPSInfo.GPSLatitudeRef",
                      "Exif.GPSInfo.GPSLongitude", "Exif.GPSInfo.GPSLongitudeRef",
                      "Exif.GPSInfo.GPSAltitude", "Exif.GPSInfo.GPSAltitudeRef"})
                    eraseFirst(exifData, key);
                image.setExifData(exifData);
            }
        });
    } catch (const Exiv2::AnyError& e) {
        // Cleaning reports nothing to the user; the trace is for whoever turns on the category.
        qCDebug(lcMetadataWrite).noquote() << "clean failed:" << path << e.what();
    } catch (...) {
        qCDebug(lcMetadataWrite).noquote() << "clean failed:" << path;
    }
}

} // namespace tagmoor
