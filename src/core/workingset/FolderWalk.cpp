#include "workingset/FolderWalk.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include <QSet>
#include <algorithm>

namespace tagmoor {

namespace {

// Folder extensions that the platform presents as single documents. Only an exact,
// lowercased match counts: an ordinary folder such as "2024.05 Trip" stays a folder.
const QSet<QString>& packageExtensions() {
    static const QSet<QString> set{"photoslibrary",
                                   "photolibrary",
                                   "migratedphotolibrary",
                                   "aplibrary",
                                   "app",
                                   "bundle",
                                   "framework",
                                   "plugin",
                                   "kext",
                                   "pkg",
                                   "mpkg",
                                   "rtfd",
                                   "fcpbundle",
                                   "imovielibrary",
                                   "tvlibrary",
                                   "logicx",
                                   "band",
                                   "pages",
                                   "numbers",
                                   "key"};
    return set;
}

void walkInto(const QString& folder, const std::atomic_bool* stop, QStringList& out) {
    // Only the names are gathered and sorted (as QDir's name order does, case-sensitively):
    // a folder of tens of thousands of photos is never held as a list of file infos.
    QStringList names;
    QDirIterator it(folder, QDir::AllEntries | QDir::NoDotAndDotDot);
    while (it.hasNext()) {
        it.next();
        names.append(it.fileName());
    }
    std::sort(names.begin(), names.end(), [](const QString& a, const QString& b) {
        return a.compare(b, Qt::CaseSensitive) < 0;
    });
    const QString prefix = folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/');
    for (const QString& name : std::as_const(names)) {
        if (stop && stop->load(std::memory_order_relaxed))
            return;
        const QFileInfo entry(prefix + name);
        const QString path = entry.absoluteFilePath();
        if (entry.isDir()) {
            if (entry.isSymLink() || isPackageFolderName(name) || isExcludedMediaPath(path))
                continue;
            walkInto(path, stop, out);
        } else if (entry.isFile() && !isExcludedMediaPath(path)) {
            out.append(path);
        }
    }
}

} // namespace

bool isPackageFolderName(const QString& name) {
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot <= 0 || dot == name.size() - 1)
        return false;
    return packageExtensions().contains(name.mid(dot + 1).toLower());
}

bool isExcludedMediaPath(const QString& absolutePath) {
    const QString lower = absolutePath.toLower();
    return lower.contains(QLatin1String("/itunes")) ||
           lower.contains(QLatin1String("photo booth library"));
}

FolderWalkResult walkFolder(const QString& folder, const std::atomic_bool* stop) {
    FolderWalkResult result;
    const QFileInfo root(folder);
    if (!root.isDir() || !QDir(folder).isReadable()) {
        result.failed = true;
        return result;
    }
    if (isExcludedMediaPath(root.absoluteFilePath()))
        return result;
    walkInto(root.absoluteFilePath(), stop, result.files);
    return result;
}

} // namespace tagmoor
