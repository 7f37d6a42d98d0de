#pragma once

#include <QSize>
#include <QString>

#include <optional>

namespace tagmoor {

// The pixel size of an image as Qt's reader for `format` ("jpeg", "png", "webp", "tiff",
// "jxl") finds it in the file's header; nothing when it finds none or has no reader for it.
//
// Qt's image readers live in Qt Gui, which pulls some forty libraries into a process. The core's
// definition (a file of its own) calls them directly, for the programs that load Qt Gui anyway;
// the command line links a definition of its own in its place, which loads them the first time
// a photo needs them, so that a command over JPEGs starts without them.
std::optional<QSize> qtImageSize(const QString& path, const char* format);

} // namespace tagmoor
