// The command line's module of Qt's image readers. The program loads it, and Qt Gui with it,
// the first time a photo needs one of them (QtImageReaders.cpp).
#include "metadata/QtImageSize.h"

#include <QtGlobal>

extern "C" Q_DECL_EXPORT bool tagmoorQtImageSize(const QString& path, const char* format,
                                                 QSize& size) {
    const std::optional<QSize> found = tagmoor::qtImageSize(path, format);
    if (found)
        size = *found;
    return found.has_value();
}
