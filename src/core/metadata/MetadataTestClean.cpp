// Stripping whole metadata groups from a file, through the same safe write as the writer.
#include "metadata/MetadataTest.h"

#include "metadata/Exiv2Guard.h"
#include "metadata/KeyListSnapshot.h"
#include "metadata/PictureTags.h"
#include "metadata/SafeMetadataEdit.h"

#include <QFile>

#include <exiv2/exiv2.hpp>

#include <iterator>
#include <memory>

namespace tagmoor {

namespace {

void clearExif(Exiv2::Image& image) {
    if (!isTiffContainer(image)) {
        image.clearExifData();
        return;
    }
    Exiv2::ExifData exifData = image.exifData();
    for (auto it = exifData.begin(); it != exifData.end();)
        it = describesPicture(it->groupName(), it->tag()) ? std::next(it) : exifData.erase(it);
    image.setExifData(exifData);
}

void eraseFirst(Exiv2::ExifData& exifData, const char* key) {
    const auto found = exifData.findKey(Exiv2::ExifKey(key));
    if (found != exifData.end())
        exifData.erase(found);
}

} // namespace

WriteResult MetadataTest::cleanMetadata(const QString& path, const CleanOptions& groups,
                                        const std::optional<FileStamp>& expected) const {
    if (QFile::decodeName(QFile::encodeName(path)) != path)
        return {WriteStatus::Failed, QStringLiteral("the path has no form on the file system")};
    WriteResult result;
    guardExiv2(
        [&] {
            // Written even when nothing is chosen: the file then keeps its metadata unchanged.
            const auto outcome = SafeMetadataEdit::run(
                path, expected,
                [&](Exiv2::Image& image) -> SafeMetadataEdit::LandedCheck {
                    if (groups.cleanIPTC)
                        image.clearIptcData();
                    if (groups.cleanXMP)
                        image.clearXmpData();
                    if (groups.cleanExif)
                        clearExif(image);
                    if (groups.cleanComment) {
                        Exiv2::ExifData exifData = image.exifData();
                        eraseFirst(exifData, "Exif.Photo.UserComment");
                        image.setExifData(exifData);
                    }
                    if (groups.cleanGPS) {
                        Exiv2::ExifData exifData = image.exifData();
                        for (const char* key :
                             {"Exif.GPSInfo.GPSLatitude", "Exif.GPSInfo.GPSLatitudeRef",
                              "Exif.GPSInfo.GPSLongitude", "Exif.GPSInfo.GPSLongitudeRef",
                              "Exif.GPSInfo.GPSAltitude", "Exif.GPSInfo.GPSAltitudeRef"})
                            eraseFirst(exifData, key);
                        image.setExifData(exifData);
                    }
                    auto asked = std::make_shared<KeyListSnapshot>(image);
                    return [asked](Exiv2::Image& written) {
                        const QStringList left = asked->differencesIn(written);
                        return left.isEmpty() ? QString() : notLandedText(left);
                    };
                },
                m_flushesToDisk, &result.status);
            if (outcome == SafeMetadataEdit::Result::FileChanged)
                result = {WriteStatus::FileChanged, QStringLiteral("changed since it was read")};
        },
        [&](Exiv2Failure kind, const QString& what) {
            // Cleaning logs nothing at the usual level; the trace is for whoever turns on the
            // category. The result tells the caller.
            qCDebug(lcMetadataWrite).noquote() << "clean failed:" << path << what;
            if (result.written())
                result.status =
                    kind == Exiv2Failure::Library && what.contains(QLatin1String("not supported"))
                        ? WriteStatus::NotWritable
                        : WriteStatus::Failed;
            result.detail = what;
        });
    return result;
}

} // namespace tagmoor
