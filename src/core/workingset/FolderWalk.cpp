#include "workingset/FolderWalk.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

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
    const QFileInfoList entries =
        QDir(folder).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name);
    for (const QFileInfo& entry : entries) {
        if (stop && stop->load(std::memory_order_relaxed))
            return;
        const QString path = entry.absoluteFilePath();
        if (entry.isDir()) {
            if (entry.isSymLink() || isPackageFolderName(entry.fileName()) ||
                isExcludedMediaPath(path))
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
