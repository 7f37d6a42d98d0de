#include "workingset/SupportedExtensions.h"

#include "foundation/ValueForm.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

#include <atomic>

namespace tagmoor {

namespace {

// -1: follow the form; 0: the wider list; 1: the classic list.
std::atomic<int> g_classicOnly{-1};

} // namespace

const QStringList& classicExtensions() {
    static const QStringList list{"jpeg", "jpg", "jpe", "png", "tiff", "tif", "jp2",          "jpf",
                                  "jpx",  "j2k", "j2c", "mos", "cr2",  "fff", "dng",          "nef",
                                  "nrw",  "pef", "sr2", "srf", "psd",  "3fr", "arw",          "crw",
                                  "dcr",  "erf", "gpr", "iiq", "kdc",  "mdc", "mef",          "mrw",
                                  "orf",  "raf", "raw", "rwl", "srw",  "x3f", "photoslibrary"};
    return list;
}

const QStringList& todaysExtensions() {
    // Phones' and cameras' formats of today, before the library package so that it stays last.
    static const QStringList list = [] {
        QStringList all = classicExtensions();
        all.removeLast();
        all << "heic"
            << "heif"
            << "hif"
            << "avif"
            << "jxl"
            << "webp"
            << "cr3"
            << "rw2" << classicExtensions().last();
        return all;
    }();
    return list;
}

bool onlyClassicExtensions() {
    const int chosen = g_classicOnly.load();
    return chosen < 0 ? !isStandardForm() : chosen == 1;
}

void setOnlyClassicExtensions(std::optional<bool> only) {
    g_classicOnly.store(only ? int(*only) : -1);
}

const QStringList& supportedExtensions() {
    return onlyClassicExtensions() ? classicExtensions() : todaysExtensions();
}

const QStringList& panelExtensions() {
    static const QStringList classic = classicExtensions().mid(0, classicExtensions().size() - 1);
    static const QStringList today = todaysExtensions().mid(0, todaysExtensions().size() - 1);
    return onlyClassicExtensions() ? classic : today;
}

// The suffix after the last dot of the file name, as the platform's path extension gives it.
// A folder path may end in a slash; the extension is that of its last name all the same.
static QString extensionOf(const QString& path) {
    return QFileInfo(QDir::cleanPath(path)).suffix();
}

bool hasSupportedExtension(const QString& path) {
    static const QSet<QString> classic(classicExtensions().begin(), classicExtensions().end());
    static const QSet<QString> today(todaysExtensions().begin(), todaysExtensions().end());
    return (onlyClassicExtensions() ? classic : today).contains(extensionOf(path).toLower());
}

bool isPhotoLibraryPackage(const QString& path) {
    return extensionOf(path) == QStringView(photoLibraryExtension);
}

} // namespace tagmoor
