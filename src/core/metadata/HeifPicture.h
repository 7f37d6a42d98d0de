#pragma once

#include <QImage>
#include <QSize>
#include <QString>

#include <optional>

namespace tagmoor {

// The width and height of a HEIF or AVIF file's primary image, as it is shown (after its
// crop and rotation); nothing when libheif can't read the file.
std::optional<QSize> heifSize(const QString& path);

// The picture of a HEIF or AVIF file for a thumbnail of `maxSide`: the smallest stored
// thumbnail that is large enough, else the primary image. `originalSize` gets the primary
// image's size. A null image when the file can't be decoded.
QImage heifPicture(const QString& path, int maxSide, QSize& originalSize);

} // namespace tagmoor
