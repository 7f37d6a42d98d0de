#pragma once

#include "batch/PhotoSource.h"
#include "workingset/FolderWalk.h"

#include <QByteArray>
#include <QHash>
#include <QSet>
#include <QStringList>

#include <vector>

namespace tagmoor::cli {

// The photos of a command-line run as paths; each record is read when the run reaches it,
// so a run of any length holds one record at a time. A file that stopped being a readable
// photo since keepPhotos() gives a record without url, which the run counts as skipped.
//
// A run may name hundreds of thousands of photos, so the paths are kept compactly: each
// folder once for the photos that follow one another in it, each name as UTF-8 in one block.
class PathPhotoSource : public PhotoSource {
public:
    void append(const QString& path);
    // Keeps the paths whose `keep` entry is true, in their order.
    void keepOnly(const std::vector<char>& keep);

    int count() const override { return int(m_ends.size()); }
    bool isSelected(int) const override { return true; }
    CGImageProperties record(int index) const override;
    CGImageProperties recordForRun(int index) const override;
    QString pathOf(int index) const override;
    // Whether a run is handed records whose values are unread, to take them from the bytes it
    // edits (a run that needs them only there, see PhotoPipeline::readsValuesWhereItEdits).
    void setValuesReadByTheRun(bool read) { m_valuesReadByTheRun = read; }

private:
    struct Run {
        int first;      // the first photo in the folder
        QString folder; // with its closing "/", or "" for a bare name
    };
    std::vector<Run> m_runs;
    QByteArray m_names;
    std::vector<quint32> m_ends; // where each photo's name ends in m_names
    // Paths that UTF-8 cannot hold as they are (a lone surrogate), by photo.
    QHash<int, QString> m_unusual;
    bool m_valuesReadByTheRun = false;
};

// The photos named on the command line: files as given (when their type is accepted) and
// the accepted files found in folders, in argument order. Problems that end the command go
// to `warnings`; files and folders that cannot be named (their names are not valid UTF-8)
// go to `leftOut`, and the run goes on without them. `namedFiles`, if given, receives the
// paths of the photos that were named as files rather than found in a folder.
PathPhotoSource collectPhotoPaths(const QStringList& inputs, QStringList* warnings,
                                  QList<LeftOutEntry>* leftOut,
                                  QSet<QString>* namedFiles = nullptr);

// Keeps those of `paths` that give a record, as a file does that the photo list would take
// in; the others are no photos of the run and go to `notPhotos`. Reads on `threads` threads.
void keepPhotos(PathPhotoSource& paths, int threads, QStringList* notPhotos);

} // namespace tagmoor::cli
