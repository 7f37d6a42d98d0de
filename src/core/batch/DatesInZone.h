#pragma once

#include "batch/FieldEdits.h"
#include "extras/ExtraEdits.h"
#include "model/CGImageProperties.h"

namespace tagmoor {

// Puts a photo's dates on the clock of the run's zone: each date field the run writes, and each
// the photo has that the run leaves as it is, is written anew in the zone (moved into it first
// when the zone says so), the XMP dates with their offset. A field the run erases stays erased.
// A date the run leaves is read from the file at `path` (when given), else from the record; an
// Exif date keeps the form of its text ("2024:05:01 12:00:00").
void putDatesInZone(const DatesZone& zone, const CGImageProperties& record, const QString& path,
                    FieldEdits& edits);

// The offsets of the Exif dates that `edits` write, by the zone's rules on each date.
ExifDateOffsets exifDateOffsets(const DatesZone& zone, const FieldEdits& edits);

} // namespace tagmoor
