#pragma once

#include <QString>

namespace tagmoor {

// What became of one photo. Only `Written` counts as processed; the rest are skips that the
// result screen shows as a number and nothing more.
enum class PhotoOutcome {
    Written,          // the output exists; its metadata step ran (and may have failed)
    SkippedNoUrl,     // the record has no file
    SkippedCollision, // a file is at the output path and overwriting is off
    SkippedNoSource,  // the source file is gone
    SkippedNoOutput,  // the copy failed and nothing is at the output path
};

inline bool isCounted(PhotoOutcome o) {
    return o == PhotoOutcome::Written;
}

QString describe(PhotoOutcome outcome);

} // namespace tagmoor
