#pragma once
// Settable versions of the write seams (metadata/WriteSeams.h): this test binary links its
// own definitions of writeFaultAt and editWholeFilesOnly, which ask what a test set here.

#include "metadata/SafeFileReplace.h"

#include <functional>

namespace tagmoor::test {

// Returns 0 to go on, or an errno value that the step fails with; an empty hook turns it off.
// Not meant to change while replacements run.
using WriteFaultHook = std::function<int(SafeFileReplace::Step)>;
void setWriteFaultHook(WriteFaultHook hook);

// True sends every photo whole through Exiv2.
void setWholeFilesOnly(bool whole);

} // namespace tagmoor::test
