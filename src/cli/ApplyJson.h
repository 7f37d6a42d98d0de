#pragma once

#include "PathPhotoSource.h"
#include "ProblemLog.h"

#include "batch/BatchResult.h"
#include "batch/PhotoPipeline.h"
#include "workingset/FolderWalk.h"

#include <QByteArray>
#include <QList>
#include <QStringList>
#include <QTextStream>

namespace tagmoor::cli {

// What `apply --json` prints: one JSON object on one line, for scripts.

// Besides the photos of the batch: the entries the walk could not name and the files that
// gave no record.
struct LeftAside {
    QList<LeftOutEntry> leftOut;
    QStringList notPhotos;
};

// The plan of a dry run: per photo its source, target, outcome, the values it would get and
// the keys it would lose. `allWritten` says whether every photo would be written. Written to
// `out` photo by photo, so that a plan of any length is never held whole.
void writePlanJson(QTextStream& out, const PhotoPipeline& pipeline, const PathPhotoSource& photos,
                   const LeftAside& aside, bool* allWritten);

// The groups a removal run strips, by their option names ("exif", "iptc", ...).
QStringList strippedGroups(const CleanOptions& clean);

// The photos of a run that were not changed, kept aside until the result is printed: those
// that did not get what was asked, with their reasons, and those a stop kept from being
// reached.
struct UnchangedPhotos {
    ProblemLog& problems;
    ProblemLog& notReached;
};

// The result of a run: the counts, where the output went, every photo that did not get what
// was asked, with its reason, and the photos not reached (those of `unchanged`, not of
// `result`).
void writeResultJson(QTextStream& out, const BatchResult& result, const UnchangedPhotos& unchanged,
                     const LeftAside& aside);

} // namespace tagmoor::cli
