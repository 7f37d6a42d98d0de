#pragma once
// What the fuzz targets do with one input, shared with the test that replays kept findings,
// so that a finding is replayed exactly the way it was found.

#include "metadata/ImageKind.h"
#include "metadata/MergeForWriting.h"
#include "metadata/MetadataFieldSet.h"
#include "metadata/MetadataTest.h"
#include "metadata/PropertyLoading.h"
#include "metadata/SafeFileReplace.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <QUrl>

#include <array>

namespace tagmoor::fuzz {

// The content decides which parser reads a file, except that TIFF-built camera files go to
// LibRaw first only under a RAW name; so for TIFF content the last byte picks the name.
inline QString extensionFor(const QByteArray& bytes) {
    static const std::array<const char*, 6> tiffNames{"tif", "dng", "iiq", "nef", "cr2", "arw"};
    switch (sniffImageKind(bytes.left(kImageKindHeadSize))) {
    case ImageKind::Unknown:
    case ImageKind::Jpeg:
        return QStringLiteral("jpg");
    case ImageKind::Png:
        return QStringLiteral("png");
    case ImageKind::WebP:
        return QStringLiteral("webp");
    case ImageKind::Tiff:
        return QString::fromLatin1(tiffNames[quint8(bytes.back()) % tiffNames.size()]);
    case ImageKind::Orf:
        return QStringLiteral("orf");
    case ImageKind::Rw2:
        return QStringLiteral("rw2");
    case ImageKind::Jp2:
        return QStringLiteral("jp2");
    case ImageKind::J2k:
        return QStringLiteral("j2c");
    case ImageKind::Psd:
        return QStringLiteral("psd");
    case ImageKind::Crw:
        return QStringLiteral("crw");
    case ImageKind::Mrw:
        return QStringLiteral("mrw");
    case ImageKind::Raf:
        return QStringLiteral("raf");
    case ImageKind::X3f:
        return QStringLiteral("x3f");
    case ImageKind::Kyocera:
        return QStringLiteral("raw");
    case ImageKind::Heif:
        return QStringLiteral("heic");
    case ImageKind::Cr3:
        return QStringLiteral("cr3");
    case ImageKind::Jxl:
        return QStringLiteral("jxl");
    }
    return QStringLiteral("jpg");
}

// Writes the input as a file in `dir`; the file's path, or nothing when it can't be written.
inline QString placeInput(const QByteArray& bytes, const QString& dir) {
    if (bytes.isEmpty())
        return {};
    const QString path = QDir(dir).filePath(QStringLiteral("input.") + extensionFor(bytes));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size())
        return {};
    return path;
}

// The record loader and the bridge's full read, as the scan and the editor use them.
inline void loadFile(const QString& path) {
    loadImageProperties(QUrl::fromLocalFile(path));
    MetadataTest().readAllPropertiesFrom(path);
}

// One photo of a batch: a few edits in each block merged over the file's values, written
// with an erase list, then the groups picked by `choice` stripped, then the result read back.
inline void writeFile(const QString& path, quint8 choice) {
    MetadataFieldSet edited;
    edited.at(*findKeyRow(QStringLiteral("Exif.Image.Artist"))) = QStringLiteral("Fuzz Artist");
    edited.exif[keyRowNumber(Field::DateTimeOriginal)] = QStringLiteral("2020:02:29 12:34:56");
    edited.exif[exifrow::ISOSpeedRatings] = qint64(800);
    edited.exif[exifrow::GPSLatitude] = -33.5;
    edited.at(*findKeyRow(QStringLiteral("Iptc.Application2.City"))) = QStringLiteral("Lyon");
    edited.xmp[xmprow::Lens] = QStringLiteral("50mm");
    MetadataTest bridge;
    bridge.setFlushesToDisk(false);
    bridge.setImagePropertiesAll(path, mergeForWriting(edited, path),
                                 ErasedRows::ofKeys({QStringLiteral("Exif.Image.Copyright"),
                                                     QStringLiteral("Iptc.Application2.Keywords"),
                                                     QStringLiteral("Xmp.xmp.ModifyDate")}));
    bridge.cleanMetadata(path, {.cleanExif = (choice & 2) != 0,
                                .cleanIPTC = (choice & 1) != 0,
                                .cleanXMP = (choice & 4) != 0,
                                .cleanGPS = (choice & 8) != 0,
                                .cleanComment = (choice & 16) != 0});
    loadImageProperties(QUrl::fromLocalFile(path));
    // The replaced file's second name is dropped in the background; wait, so that every run
    // ends with the folder as the write left it.
    SafeFileReplace::waitForReleases();
}

// The byte that picks the groups to strip: the last but one, as the last picks TIFF names.
inline quint8 cleanChoice(const QByteArray& bytes) {
    return bytes.size() < 2 ? 0 : quint8(bytes.at(bytes.size() - 2));
}

} // namespace tagmoor::fuzz
