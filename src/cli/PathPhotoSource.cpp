#include "PathPhotoSource.h"

#include "metadata/PropertyLoading.h"
#include "workingset/FolderWalk.h"
#include "workingset/SupportedExtensions.h"

#include <QFileInfo>
#include <QTextStream>
#include <QUrl>

namespace tagmoor::cli {

CGImageProperties PathPhotoSource::record(int index) const {
    const QString& path = m_paths.at(index);
    if (auto record = loadImageProperties(QUrl::fromLocalFile(path)))
        return *record;
    QTextStream(stderr) << "tagmoor-cli: not a readable photo, skipped: " << path << '\n';
    CGImageProperties unreadable;
    unreadable.url.reset();
    return unreadable;
}

QStringList collectPhotoPaths(const QStringList& inputs, QStringList* warnings) {
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
        } else if (info.isFile()) {
            if (hasSupportedExtension(info.fileName()))
                paths << info.absoluteFilePath();
            else
                *warnings << QStringLiteral("not an accepted photo type: %1").arg(input);
        } else {
            *warnings << QStringLiteral("no such file or folder: %1").arg(input);
        }
    }
    return paths;
}

} // namespace tagmoor::cli
