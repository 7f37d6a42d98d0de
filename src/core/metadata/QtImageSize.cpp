#include "metadata/QtImageSize.h"

#include <QFile>
#include <QImageReader>

namespace tagmoor {

// Header only: QImageReader::size() reads up to the frame header and stops.
std::optional<QSize> qtImageSize(const QString& path, const char* format) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QImageReader reader(&file, format);
    reader.setDecideFormatFromContent(false);
    reader.setAutoDetectImageFormat(false);
    const QSize size = reader.size();
    if (size.width() <= 0 || size.height() <= 0)
        return std::nullopt;
    return size;
}

} // namespace tagmoor
