#pragma once

#include "batch/PhotoSource.h"

#include <QStringList>

namespace tagmoor::cli {

// The photos of a command-line run as paths; each record is read when the run reaches it,
// so a run of any length holds one record at a time. A file that is not a readable photo
// gives a record without url, which the run counts as skipped.
class PathPhotoSource : public PhotoSource {
public:
    explicit PathPhotoSource(QStringList paths) : m_paths(std::move(paths)) {}
    int count() const override { return int(m_paths.size()); }
    bool isSelected(int) const override { return true; }
    CGImageProperties record(int index) const override;
    const QString& path(int index) const { return m_paths.at(index); }

private:
    QStringList m_paths;
};

// The photos named on the command line: files as given (when their type is accepted) and
// the accepted files found in folders, in argument order. Problems go to `warnings`.
QStringList collectPhotoPaths(const QStringList& inputs, QStringList* warnings);

} // namespace tagmoor::cli
