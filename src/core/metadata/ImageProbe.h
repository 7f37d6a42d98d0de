#pragma once

#include "metadata/ImageKind.h"

#include <QSize>
#include <QString>

#include <optional>

namespace tagmoor {

struct ImageProbeResult {
    ImageKind kind = ImageKind::Unknown;
    // Whether the file is an image of an accepted type that a record can be built for.
    bool readable = false;
    // Width and height as stored (not turned by the orientation tag), when known.
    std::optional<QSize> pixelSize;
};

// The test whether a file is a photo and its pixel size, from headers only: the picture is
// never decoded. The type is told from the content, so a text file or a video with a
// photo's name is turned away before any parser sees it. Qt reads the formats it knows,
// LibRaw the camera RAW files, and Exiv2 (or the tags it finds) the rest.
class ImageProbe {
public:
    static ImageProbeResult probe(const QString& path);
    // The same, for a caller that has already read the file's first bytes.
    static ImageProbeResult probe(const QString& path, const QByteArray& head);
};

} // namespace tagmoor
