#pragma once

#include "model/CGImageProperties.h"

namespace tagmoor {

struct RunValues;

// Values of a run that differ from photo to photo: the cells of a photo's row in an imported
// table, or texts whose placeholders are filled in from the photo. A run lays each of its
// PhotoValues, in order, over a copy of its own values before it computes a photo's edits; a
// run without any writes the same values into every photo.
class PhotoValues {
public:
    virtual ~PhotoValues() = default;
    // Changes `values`, a copy of the run's values (the form snapshot, the edit flags, the date
    // rules), into those of the photo whose record is `record`.
    virtual void adjust(const CGImageProperties& record, RunValues& values) const = 0;
};

} // namespace tagmoor
