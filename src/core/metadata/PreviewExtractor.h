#pragma once

#include <QByteArray>
#include <QString>

namespace tagmoor {

// Embedded preview images of a file (camera RAW, JPEG 2000, PSD, TIFF...), read through the
// metadata library without decoding the main picture.
class PreviewExtractor {
public:
    // The encoded bytes (usually JPEG) of the smallest embedded preview whose longer side is at
    // least minSide, or of the largest one when none is that big. Empty when the file has none
    // or cannot be read. Safe to call from any thread.
    static QByteArray embeddedPreview(const QString& path, int minSide);
};

} // namespace tagmoor
