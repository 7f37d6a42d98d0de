#include "metadata/StandardFormFile.h"

#include <QtEndian>

#include <exiv2/exiv2.hpp>
#include <zlib.h>

#include <array>
#include <cstdint>

namespace tagmoor {

namespace {

// The tags that locate image data in a TIFF directory, each with the tag of its lengths.
struct DataTags {
    std::uint16_t offsets;
    std::uint16_t lengths;
};
constexpr std::array<DataTags, 3> kDataTags{{
    {0x0111, 0x0117}, // StripOffsets, StripByteCounts
    {0x0144, 0x0145}, // TileOffsets, TileByteCounts
    {0x0201, 0x0202}, // JPEGInterchangeFormat, JPEGInterchangeFormatLength
}};

// The directories whose offsets count from the start of the file; a maker note's own
// directories count from elsewhere.
bool isMainDirectory(const std::string& group) {
    return group.rfind("Image", 0) == 0 || group.rfind("SubImage", 0) == 0 || group == "Thumbnail";
}

bool runsPastEnd(const Exiv2::ExifData& exifData, qint64 fileSize) {
    for (const Exiv2::Exifdatum& datum : exifData) {
        if (!isMainDirectory(datum.groupName()))
            continue;
        for (const DataTags& tags : kDataTags) {
            if (datum.tag() != tags.offsets)
                continue;
            const auto lengths = exifData.findKey(Exiv2::ExifKey(tags.lengths, datum.groupName()));
            if (lengths == exifData.end())
                continue;
            const long n = std::min(datum.count(), lengths->count());
            for (long i = 0; i < n; ++i) {
                if (qint64(datum.toLong(i)) + qint64(lengths->toLong(i)) > fileSize)
                    return true;
            }
        }
    }
    return false;
}

bool isTiffBuilt(ImageKind kind) {
    return kind == ImageKind::Tiff || kind == ImageKind::Orf || kind == ImageKind::Rw2;
}

// A chunk: its length, its type and data, and the CRC-32 of type and data.
void appendChunk(QByteArray& out, const QByteArray& typeAndData) {
    char word[4];
    qToBigEndian(quint32(typeAndData.size() - 4), word);
    out.append(word, 4);
    out.append(typeAndData);
    const uLong crc =
        crc32(crc32(0L, Z_NULL, 0), reinterpret_cast<const Bytef*>(typeAndData.constData()),
              uInt(typeAndData.size()));
    qToBigEndian(quint32(crc), word);
    out.append(word, 4);
}

bool isRawExifProfile(const QByteArray& type, const char* data, qint64 length) {
    if (type != "tEXt" && type != "zTXt" && type != "iTXt")
        return false;
    const QByteArray head(data, qMin<qint64>(length, 80));
    const QByteArray keyword = head.left(head.indexOf('\0'));
    return keyword.compare("Raw profile type exif", Qt::CaseInsensitive) == 0 ||
           keyword.compare("Raw profile type APP1", Qt::CaseInsensitive) == 0;
}

} // namespace

QString standardFormRefusal(const Exiv2::Image& image, ImageKind kind, qint64 fileSize) {
    const Exiv2::ExifData& exifData = image.exifData();
    if (isTiffBuilt(kind) && runsPastEnd(exifData, fileSize))
        return QStringLiteral("the file is cut short: its image data run past its end, and "
                              "writing would lose what is left of them");
    if (exifData.findKey(Exiv2::ExifKey("Exif.Nikon3.ScanIFD")) != exifData.end())
        return QStringLiteral("its Nikon maker note holds a scan directory that Exiv2 cannot "
                              "write back whole");
    return {};
}

QByteArray withExifChunk(const QByteArray& png, const Exiv2::ExifData& exifData) {
    static const QByteArray signature("\x89PNG\r\n\x1a\n", 8);
    if (!png.startsWith(signature))
        return png;
    QByteArray out = signature;
    bool replaced = false;
    qint64 at = signature.size();
    while (at + 12 <= png.size()) {
        const qint64 length = qFromBigEndian<quint32>(png.constData() + at);
        if (length > png.size() - at - 12)
            return png;
        const QByteArray type = png.mid(at, 8).mid(4);
        const char* data = png.constData() + at + 8;
        const qint64 end = at + 12 + length;
        if (isRawExifProfile(type, data, length)) {
            if (!replaced) {
                Exiv2::Blob tiff;
                Exiv2::ExifParser::encode(tiff, Exiv2::littleEndian, exifData);
                if (tiff.empty())
                    return png;
                appendChunk(out, QByteArray("eXIf") +
                                     QByteArray(reinterpret_cast<const char*>(tiff.data()),
                                                qsizetype(tiff.size())));
                replaced = true;
            }
        } else if (type != "eXIf") {
            out.append(png.constData() + at, end - at);
        }
        at = end;
    }
    if (!replaced || at != png.size())
        return png;
    return out;
}

} // namespace tagmoor
