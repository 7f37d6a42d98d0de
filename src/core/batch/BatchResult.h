#pragma once

#include <QString>

namespace tagmoor {

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

    int skipped() const { return total - totalProcessedPhotos; }
    bool operator==(const BatchResult&) const = default;
};

} // namespace tagmoor
