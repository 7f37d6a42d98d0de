// The command line's definition of qtImageSize(), in place of the core's: Qt's image readers
// come from a module of the program's own, loaded the first time a photo needs them. A command
// over JPEGs, whose size is read with their tags, never loads them, nor Qt Gui.
#include "metadata/QtImageSize.h"

#include <QCoreApplication>
#include <QFile>
#include <QStringList>

#include <cstdio>

#include <dlfcn.h>

namespace tagmoor {

namespace {

using SizeEntry = bool (*)(const QString& path, const char* format, QSize& size);

// The module beside the program (as built), else where it is installed. When neither loads,
// one line says so, and the sizes come from the other readers.
SizeEntry loadImageReaders() {
    const QString programDir = QCoreApplication::applicationDirPath();
    const QStringList candidates{
        programDir + QStringLiteral("/" TAGMOOR_IMAGE_READERS),
        programDir + QStringLiteral("/" TAGMOOR_IMAGE_READERS_INSTALLED "/" TAGMOOR_IMAGE_READERS)};
    QStringList errors;
    for (const QString& candidate : candidates) {
        if (void* module =
                ::dlopen(QFile::encodeName(candidate).constData(), RTLD_NOW | RTLD_LOCAL)) {
            // Never unloaded: Qt Gui stays for the life of the command.
            if (auto entry = reinterpret_cast<SizeEntry>(::dlsym(module, "tagmoorQtImageSize")))
                return entry;
        }
        errors << QString::fromLocal8Bit(::dlerror());
    }
    std::fprintf(stderr,
                 "tagmoor-cli: Qt's image readers could not be loaded (%s); the pixel sizes of "
                 "PNG, WebP, TIFF and JPEG XL photos come from other readers\n",
                 qPrintable(errors.join(QStringLiteral("; "))));
    return nullptr;
}

} // namespace

std::optional<QSize> qtImageSize(const QString& path, const char* format) {
    static const SizeEntry entry = loadImageReaders();
    QSize size;
    if (!entry || !entry(path, format, size))
        return std::nullopt;
    return size;
}

} // namespace tagmoor
