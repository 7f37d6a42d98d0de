#include "metadata/ImageProbe.h"

#include "metadata/HeifLibrary.h"

#include "metadata/BoundedRawStream.h"
#include "metadata/Exiv2Guard.h"
#include "metadata/MetadataLibrary.h"
#include "metadata/QtImageSize.h"
#include "metadata/XmpNamespaces.h"

#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QSet>
#include <QtEndian>

#include <exiv2/exiv2.hpp>
#include <libraw/libraw.h>

#include <memory>

namespace tagmoor {

namespace {

Q_LOGGING_CATEGORY(lcProbe, "tagmoor.metadata.probe", QtInfoMsg)

std::optional<QSize> validSize(qint64 width, qint64 height) {
    if (width <= 0 || height <= 0 || width > INT_MAX || height > INT_MAX)
        return std::nullopt;
    return QSize(int(width), int(height));
}

quint32 crc32Of(const QByteArray& bytes) {
    quint32 crc = 0xffffffffu;
    for (const char c : bytes) {
        crc ^= uchar(c);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (0xedb88320u & (0u - (crc & 1u)));
    }
    return ~crc;
}

// Whether libpng can read a PNG's chunks up to its picture data without an error. libpng
// prints its errors to stderr itself, around Qt's reader, so a file that would raise one (a
// chunk length past 2^31, a chunk type that is no letters, a critical chunk whose checksum
// does not match) is left to Exiv2, which is what follows Qt's failure anyway. Only the chunk
// headers are read, and the small critical chunks before the picture data.
bool pngChunksAreSound(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || !file.seek(8))
        return false;
    constexpr int maxChunks = 256;
    for (int i = 0; i < maxChunks; ++i) {
        const QByteArray header = file.read(8);
        if (header.size() < 8)
            return false;
        const quint32 length = qFromBigEndian<quint32>(header.constData());
        const QByteArray type = header.mid(4);
        if (length > 0x7fffffffu)
            return false;
        for (const char c : type) {
            if (!((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z')))
                return false;
        }
        if (i == 0 && (type != "IHDR" || length != 13))
            return false;
        if (type == "IDAT" || type == "IEND")
            return true;
        const bool critical = type[0] >= 'A' && type[0] <= 'Z';
        if (critical && length <= 4096) {
            const QByteArray data = file.read(length + 4);
            if (data.size() != qint64(length) + 4 ||
                crc32Of(type + data.left(length)) !=
                    qFromBigEndian<quint32>(data.constData() + length))
                return false;
        } else if (!file.seek(file.pos() + length + 4)) {
            return false;
        }
    }
    return true; // a long run of chunks: left to libpng
}

// LibRaw identifies the camera and the sensor's size from the file's headers; the RAW data
// is not unpacked. The parse runs on a bounded stream: `gaveUp` is set when a damaged file
// made LibRaw read on past its budget.
std::optional<QSize> librawSize(const QString& path, bool& gaveUp) {
    BoundedRawStream stream(path);
    auto raw = std::make_unique<LibRaw>(LIBRAW_OPTIONS_NONE);
    switch (openBoundedRaw(*raw, stream)) {
    case RawOpen::Opened:
        return validSize(raw->imgdata.sizes.width, raw->imgdata.sizes.height);
    case RawOpen::Rejected:
        qCDebug(lcProbe) << "no size from LibRaw for" << path;
        break;
    case RawOpen::GaveUp:
        gaveUp = true;
        break;
    }
    return std::nullopt;
}

std::optional<QSize> tagSize(const Exiv2::ExifData& exif, const char* widthKey,
                             const char* heightKey) {
    const auto w = exif.findKey(Exiv2::ExifKey(widthKey));
    const auto h = exif.findKey(Exiv2::ExifKey(heightKey));
    if (w == exif.end() || h == exif.end() || w->count() == 0 || h->count() == 0)
        return std::nullopt;
    return validSize(w->toLong(0), h->toLong(0));
}

// The size Exiv2 finds in the format's own header, or else the one recorded in the tags.
std::optional<QSize> exiv2Size(const QString& path) {
    std::optional<QSize> size;
    guardExiv2(
        [&] {
            Exiv2::Image::AutoPtr image =
                Exiv2::ImageFactory::open(QFile::encodeName(path).toStdString());
            if (!image.get())
                return;
            {
                const auto xmpLock = lockXmpToolkit();
                image->readMetadata();
                settleXmpPrefixesAfterRead(*image);
            }
            size = validSize(image->pixelWidth(), image->pixelHeight());
            const Exiv2::ExifData& exif = image->exifData();
            if (!size)
                size = tagSize(exif, "Exif.Photo.PixelXDimension", "Exif.Photo.PixelYDimension");
            if (!size)
                size = tagSize(exif, "Exif.Image.ImageWidth", "Exif.Image.ImageLength");
        },
        [&](Exiv2Failure, const QString& what) {
            qCDebug(lcProbe) << "no size from Exiv2 for" << path << ":" << what;
        });
    return size;
}

// A bare JPEG 2000 code stream starts with its SIZ segment: the reference grid's size and
// the image's offset in it.
std::optional<QSize> j2kSize(const QByteArray& head) {
    if (head.size() < 24)
        return std::nullopt;
    const auto* p = reinterpret_cast<const uchar*>(head.constData());
    const qint64 width = qint64(qFromBigEndian<quint32>(p + 8)) - qFromBigEndian<quint32>(p + 16);
    const qint64 height = qint64(qFromBigEndian<quint32>(p + 12)) - qFromBigEndian<quint32>(p + 20);
    return validSize(width, height);
}

// The X3F header records columns and rows after the signature, version, id and mark bits.
std::optional<QSize> x3fSize(const QByteArray& head) {
    if (head.size() < 36)
        return std::nullopt;
    const auto* p = reinterpret_cast<const uchar*>(head.constData());
    return validSize(qFromLittleEndian<quint32>(p + 28), qFromLittleEndian<quint32>(p + 32));
}

// TIFF-built files with these extensions are camera RAW: their first directory is often a
// small preview, so LibRaw gives the size rather than a TIFF reader.
bool hasRawExtension(const QString& path) {
    static const QSet<QString> raw{
        QStringLiteral("mos"), QStringLiteral("cr2"), QStringLiteral("fff"), QStringLiteral("dng"),
        QStringLiteral("nef"), QStringLiteral("nrw"), QStringLiteral("pef"), QStringLiteral("sr2"),
        QStringLiteral("srf"), QStringLiteral("3fr"), QStringLiteral("arw"), QStringLiteral("dcr"),
        QStringLiteral("erf"), QStringLiteral("gpr"), QStringLiteral("iiq"), QStringLiteral("kdc"),
        QStringLiteral("mdc"), QStringLiteral("mef"), QStringLiteral("raw"), QStringLiteral("rwl"),
        QStringLiteral("srw"), QStringLiteral("orf"), QStringLiteral("raf"), QStringLiteral("mrw"),
        QStringLiteral("crw"), QStringLiteral("x3f"), QStringLiteral("cr3"), QStringLiteral("rw2")};
    return raw.contains(QFileInfo(path).suffix().toLower());
}

template <typename... Readers> std::optional<QSize> firstSize(Readers&&... readers) {
    std::optional<QSize> size;
    ((size = size ? size : readers()), ...);
    return size;
}

} // namespace

ImageProbeResult ImageProbe::probe(const QString& path) {
    return probe(path, readImageHead(path));
}

ImageProbeResult ImageProbe::probe(const QString& path, const QByteArray& head) {
    ImageProbeResult result;
    result.kind = sniffImageKind(head);
    const auto qt = [&](const char* format) {
        return [&, format] { return qtImageSize(path, format); };
    };
    bool rawGaveUp = false;
    const auto libraw = [&] { return librawSize(path, rawGaveUp); };
    const auto exiv2 = [&] { return exiv2Size(path); };

    switch (result.kind) {
    case ImageKind::Unknown:
        return result;
    case ImageKind::Jpeg:
        result.pixelSize = firstSize(qt("jpeg"), exiv2);
        // A JPEG, PNG or WebP without a readable frame header has no picture at all.
        result.readable = result.pixelSize.has_value();
        return result;
    case ImageKind::Png:
        result.pixelSize = pngChunksAreSound(path) ? firstSize(qt("png"), exiv2) : firstSize(exiv2);
        result.readable = result.pixelSize.has_value();
        return result;
    case ImageKind::WebP:
        result.pixelSize = firstSize(qt("webp"), exiv2);
        result.readable = result.pixelSize.has_value();
        return result;
    case ImageKind::Tiff:
        result.pixelSize = hasRawExtension(path) ? firstSize(libraw, exiv2, qt("tiff"))
                                                 : firstSize(qt("tiff"), exiv2, libraw);
        break;
    case ImageKind::Orf:
    case ImageKind::Rw2:
    case ImageKind::Crw:
    case ImageKind::Mrw:
    case ImageKind::Raf:
        result.pixelSize = firstSize(libraw, exiv2);
        break;
    case ImageKind::X3f:
        result.pixelSize = firstSize(libraw, [&] { return x3fSize(head); });
        break;
    case ImageKind::Kyocera:
        result.pixelSize = libraw();
        break;
    case ImageKind::Jp2:
    case ImageKind::Psd:
        result.pixelSize = exiv2Size(path);
        break;
    case ImageKind::J2k:
        result.pixelSize = j2kSize(head);
        break;
    case ImageKind::Heif:
        // As shown, after the crop and rotation the file asks for; else the coded size that
        // Exiv2's box reader finds.
        result.pixelSize = firstSize([&] { return heifSize(path); }, exiv2);
        break;
    case ImageKind::Cr3:
        result.pixelSize = firstSize(libraw, exiv2);
        break;
    case ImageKind::Jxl:
        // Where Qt has no JPEG XL plugin the signature alone makes it a photo of unknown size.
        result.pixelSize = qt("jxl")();
        break;
    }
    // A file that held LibRaw's parse past its budget is damaged beyond reading, whatever
    // another reader made of it.
    if (rawGaveUp) {
        result.pixelSize.reset();
        return result;
    }
    // Otherwise the signature of these types is proof enough: camera files whose picture data
    // was cut away still carry their tags.
    result.readable = true;
    return result;
}

} // namespace tagmoor
