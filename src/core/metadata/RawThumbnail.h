#pragma once

#include <QImage>
#include <QSize>
#include <QString>

namespace tagmoor {

// The thumbnail that a camera RAW file carries, read through LibRaw without decoding the
// picture. Null when the file has none or LibRaw cannot open it; `originalSize` gets the
// picture's size as shown (turned by its orientation) whenever LibRaw tells it. Safe to call
// from any thread.
QImage rawThumbnail(const QString& path, QSize& originalSize);

} // namespace tagmoor
