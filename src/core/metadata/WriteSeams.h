#pragma once

#include "metadata/SafeFileReplace.h"

namespace tagmoor {

// Two points where a test or a benchmark steps into a write. They are chosen when the program
// is linked, not set while it runs: the core's own definitions (each in a file of its own, so
// that a binary may replace one and keep the other) hold no state and change nothing, and the
// core test binary and the write benchmark link definitions of their own in their place.

// Asked before each step of SafeFileReplace (`Write` before each chunk of the temporary file):
// 0 to go on, or an errno value that the step then fails with as if the system had returned
// it. May block, so that a test can kill the process at that point.
int writeFaultAt(SafeFileReplace::Step step);

// True sends every photo whole through Exiv2, as it went before JPEG heads were edited alone,
// so that a test can compare the two ways on the same photos.
bool editWholeFilesOnly();

} // namespace tagmoor
