#pragma once

#include <QList>
#include <QString>

namespace tagmoor {

// A selected photo that did not get all that was asked, and why.
struct PhotoProblem {
    QString path;
    QString reason;
    bool operator==(const PhotoProblem&) const = default;
};

// What a run leaves behind for its result screen.
struct BatchResult {
    // Selected photos of the list.
    int total = 0;
    // Photos the run reached before it ended (all of them unless stopped).
    int processed = 0;
    // Photos that got as far as an output file ("Images Processed"), whatever became of
    // their edit.
    int totalProcessedPhotos = 0;
    // Where the output went: the folder, the same-as-source text, or "" when no photo got
    // that far.
    QString outputDirectoryValue;
    bool stopped = false;
    // Every photo the run reached that did not get what was asked, in list order: skipped
    // (for a collision, a missing source, a failed copy, a refused name), or with an edit
    // that did not land (format not writable, disk full, no permission, file changed, not a
    // photo any more); with a mode the run does not know, every photo. The counts above stay
    // as the result screen defines them; this list is what "could not be changed" shows.
    QList<PhotoProblem> problems = {};
    // The photos a stop kept the run from reaching, in list order, apart from the problems:
    // nothing was tried on them. Their number is `notReachedCount` also when a sink took them.
    QStringList notReached = {};
    int notReachedCount = 0;
    // Processed photos whose edit did not land (a write that failed, a file date that could
    // not be set): they count in `totalProcessedPhotos` but are not saved. Counted in the
    // standard form only: the described form calls every processed photo saved.
    int processedWithoutEdit = 0;
    // Photos whose edit went elsewhere than into the photo, in list order, with where it went
    // ("written to sidecar"); they carry the edit and count as saved.
    QList<PhotoProblem> notes = {};

    int skipped() const { return total - totalProcessedPhotos; }
    // The photos that carry the whole edit: the only ones the result calls saved.
    int savedPhotos() const { return totalProcessedPhotos - processedWithoutEdit; }
    bool operator==(const BatchResult&) const = default;
};

} // namespace tagmoor
