#include "workingset/SupportedExtensions.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

namespace tagmoor {

const QStringList& supportedExtensions() {
    static const QStringList list{"jpeg", "jpg", "jpe", "png", "tiff", "tif", "jp2",          "jpf",
                                  "jpx",  "j2k", "j2c", "mos", "cr2",  "fff", "dng",          "nef",
                                  "nrw",  "pef", "sr2", "srf", "psd",  "3fr", "arw",          "crw",
                                  "dcr",  "erf", "gpr", "iiq", "kdc",  "mdc", "mef",          "mrw",
                                  "orf",  "raf", "raw", "rwl", "srw",  "x3f", "photoslibrary"};
    return list;
}

const QStringList& panelExtensions() {
    static const QStringList list = supportedExtensions().mid(0, supportedExtensions().size() - 1);
    return list;
}

// The suffix after the last dot of the file name, as the platform's path extension gives it.
// A folder path may end in a slash; the extension is that of its last name all the same.
static QString extensionOf(const QString& path) {
    return QFileInfo(QDir::cleanPath(path)).suffix();
}

bool hasSupportedExtension(const QString& path) {
    static const QSet<QString> set(supportedExtensions().begin(), supportedExtensions().end());
    return set.contains(extensionOf(path).toLower());
}

bool isPhotoLibraryPackage(const QString& path) {
    return extensionOf(path) == QStringView(photoLibraryExtension);
}

} // namespace tagmoor
