// Stripping whole metadata groups from a file, through the same safe write as the writer.
#include "metadata/MetadataTest.h"

#include "metadata/Exiv2Guard.h"
#include "metadata/SafeMetadataEdit.h"

#include <QFile>

#include <exiv2/exiv2.hpp>

#include <iterator>
#include <set>

namespace tagmoor {

namespace {

// In TIFF-built files (TIFF, DNG, NEF, CR2, ORF, RW2) the Exif block also describes where the
// pictures are and how to decode them. Clearing it whole would leave a file that no reader can
// show (Exiv2 keeps only what it deems the main image: a DNG would lose its preview and every
// DNG tag). So for these types the tags that describe the pictures stay and the rest goes.
bool isTiffContainer(const Exiv2::Image& image) {
    const int type = image.imageType();
    return type == Exiv2::ImageType::tiff || type == Exiv2::ImageType::cr2 ||
           type == Exiv2::ImageType::orf || type == Exiv2::ImageType::rw2;
}

bool describesPicture(const Exiv2::Exifdatum& datum) {
    const std::string group = datum.groupName();
    const bool imageDirectory = group == "Thumbnail" || group.rfind("Image", 0) == 0 ||
                                group.rfind("SubImage", 0) == 0 || group.rfind("SubThumb", 0) == 0;
    if (!imageDirectory)
        return false;
    static const std::set<uint16_t> structure{
        0x00fe, 0x00ff, 0x0100, 0x0101, 0x0102, 0x0103, 0x0106, 0x0107, 0x010a, 0x0111, 0x0115,
        0x0116, 0x0117, 0x011a, 0x011b, 0x011c, 0x0128, 0x012d, 0x013d, 0x013e, 0x013f, 0x0140,
        0x0142, 0x0143, 0x0144, 0x0145, 0x014a, 0x0152, 0x0153, 0x015b, 0x0200, 0x0201, 0x0202,
        0x0211, 0x0212, 0x0213, 0x0214, 0x828d, 0x828e, 0x8773, 0x9216};
    // From 0xc5d8 on: the raw layout tags of cameras and every DNG tag.
    return structure.count(datum.tag()) != 0 || datum.tag() >= 0xc5d8;
}

void clearExif(Exiv2::Image& image) {
    if (!isTiffContainer(image)) {
        image.clearExifData();
        return;
    }
    Exiv2::ExifData exifData = image.exifData();
    for (auto it = exifData.begin(); it != exifData.end();)
        it = describesPicture(*it) ? std::next(it) : exifData.erase(it);
    image.setExifData(exifData);
}

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
    guardExiv2(
        [&] {
            // Written even when nothing is chosen: the file then keeps its metadata unchanged.
            SafeMetadataEdit::run(
                path, expected,
                [&](Exiv2::Image& image) {
                    if (iptc)
                        image.clearIptcData();
                    if (xmp)
                        image.clearXmpData();
                    if (exif)
                        clearExif(image);
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
                },
                m_flushesToDisk);
        },
        [&](Exiv2Failure, const QString& what) {
            // Cleaning reports nothing to the user; the trace is for whoever turns on the
            // category.
            qCDebug(lcMetadataWrite).noquote() << "clean failed:" << path << what;
        });
}

} // namespace tagmoor
