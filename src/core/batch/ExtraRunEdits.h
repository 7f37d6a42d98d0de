#pragma once

#include "batch/FieldEdits.h"
#include "batch/RunValues.h"
#include "metadata/ExtraTags.h"

namespace tagmoor {

// What a photo of the run gets beyond the key-list rows: the run's extra edits, and, when the
// run keeps copies in step (ExtraEdits::syncCopies), the other copies of each edited caption,
// creator, rights or location field (an emptied or erased field empties its copies).
ExtraWrite extraWriteOf(const RunValues& values, const FieldEdits& edits);

} // namespace tagmoor
