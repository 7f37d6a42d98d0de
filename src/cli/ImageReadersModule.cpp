// The command line's module of Qt's image readers. The program loads it, and Qt Gui with it,
// the first time a photo needs one of them (QtImageReaders.cpp).
#include "metadata/QtImageSize.h"

#include <QLoggingCategory>
#include <QtGlobal>

#include <tiffio.h>

#include <cstdarg>

namespace {

Q_LOGGING_CATEGORY(lcTiff, "tagmoor.metadata.libtiff", QtWarningMsg)

// libtiff, which Qt's TIFF reader uses, prints its complaints about damaged files straight to
// stderr, which a script reads line by line; they go to a logging category instead, shown with
// --verbose.
void tiffLog(const char* module, const char* format, va_list args) {
    const QString text = QString::vasprintf(format, args);
    if (module && *module)
        qCWarning(lcTiff).noquote() << module << ": " << text;
    else
        qCWarning(lcTiff).noquote() << text;
}

// Set as the module loads: no TIFF has been read yet, since Qt's TIFF reader comes with it.
const bool g_tiffRouted = [] {
    TIFFSetWarningHandler(tiffLog);
    TIFFSetErrorHandler(tiffLog);
    return true;
}();

} // namespace

extern "C" Q_DECL_EXPORT bool tagmoorQtImageSize(const QString& path, const char* format,
                                                 QSize& size) {
    const std::optional<QSize> found = tagmoor::qtImageSize(path, format);
    if (found)
        size = *found;
    return found.has_value();
}
