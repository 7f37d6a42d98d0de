#include "workingset/ThumbnailLoader.h"

#include "metadata/HeifPicture.h"
#include "metadata/PreviewExtractor.h"
#include "metadata/RawThumbnail.h"

#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QSet>

#include <algorithm>

namespace tagmoor {

bool ThumbnailLoader::isRawExtension(const QString& suffix) {
    static const QSet<QString> raw{"mos", "cr2", "fff", "dng", "nef", "nrw", "pef",
                                   "sr2", "srf", "3fr", "arw", "crw", "dcr", "erf",
                                   "gpr", "iiq", "kdc", "mdc", "mef", "mrw", "orf",
                                   "raf", "raw", "rwl", "srw", "x3f", "cr3", "rw2"};
    return raw.contains(suffix);
}

bool ThumbnailLoader::isHeifExtension(const QString& suffix) {
    return suffix == QLatin1String("heic") || suffix == QLatin1String("heif") ||
           suffix == QLatin1String("hif") || suffix == QLatin1String("avif");
}

ThumbnailResult ThumbnailLoader::load(const ThumbnailRequest& request) {
    ThumbnailResult result;
    result.path = request.path;
    result.maxSide = request.maxSide;
    const QFileInfo info(request.path);
    if (!info.isFile())
        return result;
    result.fileSize = info.size();
    result.modified = info.lastModified();

    const int side = std::max(1, request.maxSide);
    QImage image;
    const QString suffix = info.suffix().toLower();
    if (isRawExtension(suffix))
        image = fromRaw(request.path, result.originalSize);
    // Qt reads no HEIF or AVIF of its own; libheif does.
    if (isHeifExtension(suffix))
        image = heifPicture(request.path, side, result.originalSize);
    if (image.isNull())
        image = fromReader(request.path, side, result.originalSize);
    if (image.isNull())
        image = fromPreview(request.path, side);
    if (!image.isNull()) {
        if (!result.originalSize.isValid())
            result.originalSize = image.size();
        result.image = scaled(image, side);
    }
    return result;
}

QImage ThumbnailLoader::fromReader(const QString& path, int maxSide, QSize& originalSize) {
    QImageReader reader(path);
    reader.setAutoTransform(true);
    if (!reader.canRead())
        return {};
    const QSize size = reader.size();
    if (size.isValid()) {
        originalSize = size;
        // Scaled decoding lets the JPEG reader skip most of the picture data.
        if (std::max(size.width(), size.height()) > maxSide)
            reader.setScaledSize(size.scaled(maxSide, maxSide, Qt::KeepAspectRatio));
    }
    QImage image = reader.read();
    return image;
}

QImage ThumbnailLoader::fromRaw(const QString& path, QSize& originalSize) {
    return rawThumbnail(path, originalSize);
}

QImage ThumbnailLoader::fromPreview(const QString& path, int maxSide) {
    const QByteArray bytes = PreviewExtractor::embeddedPreview(path, maxSide);
    if (bytes.isEmpty())
        return {};
    return QImage::fromData(bytes);
}

QImage ThumbnailLoader::scaled(const QImage& image, int maxSide) {
    if (std::max(image.width(), image.height()) <= maxSide)
        return image;
    return image.scaled(maxSide, maxSide, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

} // namespace tagmoor
