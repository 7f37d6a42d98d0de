#pragma once

#include <QDateTime>
#include <QImage>
#include <QSize>
#include <QString>

namespace tagmoor {

// What a view asks for: the picture of one file at a maximum side.
struct ThumbnailRequest {
    QString path;
    int maxSide = 120;
};

// What it gets back. `image` is null when nothing could be decoded; the file facts are filled
// whenever the file exists, so that a cache can tell a changed file from the same one.
struct ThumbnailResult {
    QString path;
    int maxSide = 0;
    QImage image;
    QSize originalSize;
    qint64 fileSize = -1;
    QDateTime modified;
};

// Decodes small pictures without loading whole images: the reader's scaled decoding for the
// formats Qt reads, the embedded thumbnail for camera RAW files, and the embedded preview of the
// metadata for what neither decodes. A pure function of its request; runs on any thread.
class ThumbnailLoader {
public:
    static ThumbnailResult load(const ThumbnailRequest& request);

    // Lower-case extensions of camera RAW formats, read through their embedded thumbnail.
    static bool isRawExtension(const QString& suffix);
    // HEIC, HEIF and AVIF, whose pictures libheif decodes.
    static bool isHeifExtension(const QString& suffix);

private:
    static QImage fromReader(const QString& path, int maxSide, QSize& originalSize);
    static QImage fromRaw(const QString& path, QSize& originalSize);
    static QImage fromPreview(const QString& path, int maxSide);
    static QImage scaled(const QImage& image, int maxSide);
};

} // namespace tagmoor
