#pragma once

#include "batch/PhotoSource.h"
#include "workingset/FolderWalk.h"

#include <QStringList>

namespace tagmoor::cli {

// The photos of a command-line run as paths; each record is read when the run reaches it,
// so a run of any length holds one record at a time. A file that stopped being a readable
// photo since photosAmong() gives a record without url, which the run counts as skipped.
class PathPhotoSource : public PhotoSource {
public:
    explicit PathPhotoSource(QStringList paths) : m_paths(std::move(paths)) {}
    int count() const override { return int(m_paths.size()); }
    bool isSelected(int) const override { return true; }
    CGImageProperties record(int index) const override;
    QString pathOf(int index) const override { return m_paths.at(index); }
    const QString& path(int index) const { return m_paths.at(index); }

private:
    QStringList m_paths;
};

// The photos named on the command line: files as given (when their type is accepted) and
// the accepted files found in folders, in argument order. Problems that end the command go
// to `warnings`; files and folders that cannot be named (their names are not valid UTF-8)
// go to `leftOut`, and the run goes on without them.
QStringList collectPhotoPaths(const QStringList& inputs, QStringList* warnings,
                              QList<LeftOutEntry>* leftOut);

// The paths among `paths` that give a record, as a file does that the photo list would take
// in; the others are no photos of the run and go to `notPhotos`. Reads on `threads` threads.
QStringList photosAmong(const QStringList& paths, int threads, QStringList* notPhotos);

} // namespace tagmoor::cli
