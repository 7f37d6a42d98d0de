#pragma once

#include <QImage>
#include <QSize>
#include <QString>

#include <optional>

namespace tagmoor {

// The picture of a HEIF or AVIF file for a thumbnail of `maxSide`: the smallest stored
// thumbnail that is large enough, else the primary image. `originalSize` gets the primary
// image's size. A null image when the file can't be decoded.
QImage heifPicture(const QString& path, int maxSide, QSize& originalSize);

} // namespace tagmoor
