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
    // Photos that have an output file.
    int totalProcessedPhotos = 0;
    // Where the output went: the folder, the same-as-source text, or "" when no photo got
    // that far.
    QString outputDirectoryValue;
    bool stopped = false;
    // Every selected photo that did not get what was asked, in list order: skipped (for a
    // collision, a missing source, a failed copy, a refused name, a stop), or with an output
    // whose edit did not land (format not writable, disk full, no permission, file changed,
    // not a photo any more). The counts above stay as the result screen defines them; this
    // list is what "could not be changed" shows.
    QList<PhotoProblem> problems = {};

    int skipped() const { return total - totalProcessedPhotos; }
    bool operator==(const BatchResult&) const = default;
};

} // namespace tagmoor
