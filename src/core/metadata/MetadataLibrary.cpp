#include "metadata/MetadataLibrary.h"

#include <QLoggingCategory>

#include <exiv2/exiv2.hpp>
#include <tiffio.h>

#include <cstdarg>

#include <mutex>

Q_LOGGING_CATEGORY(lcExiv2, "tagmoor.metadata.exiv2", QtWarningMsg)
Q_LOGGING_CATEGORY(lcTiff, "tagmoor.metadata.libtiff", QtWarningMsg)

namespace tagmoor {

namespace {
void exiv2Log(int level, const char* message) {
    QByteArray text(message);
    while (text.endsWith('\n'))
        text.chop(1);
    if (level >= Exiv2::LogMsg::error)
        qCWarning(lcExiv2).noquote() << text;
    else
        qCDebug(lcExiv2).noquote() << text;
}
// libtiff, which Qt's TIFF reader uses, prints its complaints about damaged files straight to
// stderr unless given handlers; they go to a logging category instead.
void tiffLog(const char* module, const char* format, va_list args) {
    const QString text = QString::vasprintf(format, args);
    if (module && *module)
        qCWarning(lcTiff).noquote() << module << ": " << text;
    else
        qCWarning(lcTiff).noquote() << text;
}
// Exiv2 takes this lock when it registers XMP namespaces (recursive, in case it ever nests).
std::recursive_mutex& namespaceMutex() {
    static std::recursive_mutex mutex;
    return mutex;
}
void lockNamespaces(void* mutex, bool lock) {
    if (lock)
        static_cast<std::recursive_mutex*>(mutex)->lock();
    else
        static_cast<std::recursive_mutex*>(mutex)->unlock();
}
} // namespace

void routeTiffMessagesToLog() {
    TIFFSetWarningHandler(tiffLog);
    TIFFSetErrorHandler(tiffLog);
}

std::unique_lock<std::mutex> lockXmpToolkit() {
    static std::mutex mutex;
    return std::unique_lock<std::mutex>(mutex);
}

void initializeMetadataLibrary() {
    static std::once_flag once;
    std::call_once(once, [] {
        Exiv2::XmpParser::initialize(lockNamespaces, &namespaceMutex());
        Exiv2::LogMsg::setHandler(exiv2Log);
        Exiv2::LogMsg::setLevel(Exiv2::LogMsg::warn);
    });
}

} // namespace tagmoor
