#include "PathPhotoSource.h"

#include "metadata/PropertyLoading.h"
#include "workingset/FolderWalk.h"
#include "workingset/SupportedExtensions.h"

#include <QFileInfo>
#include <QThreadPool>
#include <QUrl>
#include <QtConcurrent/QtConcurrentMap>

namespace tagmoor::cli {

CGImageProperties PathPhotoSource::record(int index) const {
    const QString& path = m_paths.at(index);
    if (auto record = loadImageProperties(QUrl::fromLocalFile(path)))
        return *record;
    CGImageProperties unreadable;
    unreadable.url.reset();
    return unreadable;
}

QStringList collectPhotoPaths(const QStringList& inputs, QStringList* warnings,
                              QList<LeftOutEntry>* leftOut) {
    QStringList paths;
    for (const QString& input : inputs) {
        const QFileInfo info(input);
        if (info.isDir()) {
            const FolderWalkResult walk = walkFolder(info.absoluteFilePath());
            if (walk.failed)
                *warnings << QStringLiteral("cannot read the folder %1").arg(input);
            for (const QString& file : walk.files) {
                if (hasSupportedExtension(file))
                    paths << file;
            }
            for (const LeftOutEntry& entry : walk.leftOut) {
                if (entry.isFolder || hasSupportedExtension(entry.path))
                    *leftOut << entry;
            }
        } else if (info.isFile()) {
            if (hasSupportedExtension(info.fileName()))
                paths << info.absoluteFilePath();
            else
                *warnings << QStringLiteral("not an accepted photo type: %1").arg(input);
        } else if (info.exists()) {
            *warnings << QStringLiteral("not a regular file or folder: %1").arg(input);
        } else if (input.contains(QChar::ReplacementCharacter)) {
            // The argument's bytes were no UTF-8 and reached us with stand-ins: no path of
            // ours names that file.
            *leftOut << LeftOutEntry{input, false, QStringLiteral("the name is not valid UTF-8")};
        } else {
            *warnings << QStringLiteral("no such file or folder: %1").arg(input);
        }
    }
    return paths;
}

QStringList photosAmong(const QStringList& paths, int threads, QStringList* notPhotos) {
    QThreadPool pool;
    pool.setMaxThreadCount(std::max(1, threads));
    const QList<bool> gives =
        QtConcurrent::blockingMapped<QList<bool>>(&pool, paths, [](const QString& path) {
            return loadImageProperties(QUrl::fromLocalFile(path)).has_value();
        });
    QStringList photos;
    for (int i = 0; i < paths.size(); ++i)
        (gives.at(i) ? photos : *notPhotos) << paths.at(i);
    return photos;
}

} // namespace tagmoor::cli
