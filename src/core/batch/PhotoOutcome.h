#pragma once

#include <QString>

namespace tagmoor {

// What became of one photo. Only `Written` counts as processed; the rest are skips that the
// result screen shows as a number.
enum class PhotoOutcome {
    Written,               // the output was made and its metadata step ran (and may have
                           // failed; in the standard form no such copy stays in an output
                           // folder)
    SkippedNoUrl,          // the record has no file
    SkippedCollision,      // a file is at the output path and overwriting is off
    SkippedNoSource,       // the source file is gone
    SkippedNoOutput,       // the copy failed and nothing is at the output path
    SkippedUnsafeName,     // the new name is no single file name, or the output would leave
                           // its folder
    SkippedSourceInTheWay, // another photo of the run is at the output path
};

inline bool isCounted(PhotoOutcome o) {
    return o == PhotoOutcome::Written;
}

QString describe(PhotoOutcome outcome);

// The outcome of one photo and, when the photo did not get all that was asked (a skip, or an
// output whose edit failed), why; an empty `problem` means the whole edit landed.
struct PhotoResult {
    PhotoOutcome outcome = PhotoOutcome::Written;
    QString problem;
    // Where the edit went when not into the photo itself ("written to sidecar").
    QString note = {};

    // The photo holds everything that was asked: the only kind of photo called saved.
    bool carriesEdit() const { return outcome == PhotoOutcome::Written && problem.isEmpty(); }

    bool operator==(const PhotoResult&) const = default;
};

} // namespace tagmoor
