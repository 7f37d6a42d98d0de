#include "metadata/TagListing.h"

#include "metadata/Exiv2Guard.h"
#include "metadata/ImageKind.h"
#include "metadata/MetadataLibrary.h"
#include "metadata/XmpNamespaces.h"

#include <QFile>

#include <exiv2/exiv2.hpp>

namespace tagmoor {

namespace {

bool isLayoutTag(const std::string& key) {
    static const char* const tags[] = {
        "Exif.Image.ExifTag",
        "Exif.Image.GPSTag",
        "Exif.Photo.InteroperabilityTag",
        "Exif.Image.StripOffsets",
        "Exif.Image.TileOffsets",
        "Exif.Image.SubIFDs",
        "Exif.Thumbnail.JPEGInterchangeFormat",
        "Exif.Thumbnail.StripOffsets",
        "Exif.Image.JPEGInterchangeFormat",
        // The maker note's own block holds offsets into itself; its tags are listed one by one.
        "Exif.MakerNote.Offset",
        "Exif.Photo.MakerNote",
    };
    for (const char* tag : tags) {
        if (key == tag)
            return true;
    }
    return false;
}

template <typename Data> void listBlock(const Data& data, QMap<QString, TagText>& out) {
    for (const auto& datum : data) {
        const std::string key = datum.key();
        if (isLayoutTag(key))
            continue;
        QString name = QString::fromStdString(key);
        for (int n = 2; out.contains(name); ++n)
            name = QString::fromStdString(key) + QStringLiteral("[%1]").arg(n);
        out.insert(name, TagText{QString::fromLatin1(datum.typeName() ? datum.typeName() : "?"),
                                 QString::fromUtf8(datum.toString().c_str())});
    }
}

} // namespace

std::optional<QMap<QString, TagText>> listTags(const QString& path) {
    const QByteArray native = QFile::encodeName(path);
    if (!exiv2Reads(sniffImageKindOfFile(path)))
        return std::nullopt;
    QMap<QString, TagText> tags;
    const bool read = guardExiv2(
        [&] {
            Exiv2::Image::AutoPtr image = Exiv2::ImageFactory::open(native.toStdString(), true);
            if (!image.get())
                throw Exiv2::Error(Exiv2::kerErrorMessage, "the file could not be opened");
            const auto xmpLock = lockXmpToolkit();
            image->readMetadata();
            settleXmpPrefixesAfterRead(*image);
            listBlock(image->exifData(), tags);
            listBlock(image->iptcData(), tags);
            listBlock(image->xmpData(), tags);
        },
        [](Exiv2Failure, const QString&) {});
    if (!read)
        return std::nullopt;
    return tags;
}

} // namespace tagmoor
