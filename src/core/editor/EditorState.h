#pragma once

#include "batch/FieldEditedFlags.h"
#include "batch/PhotoValues.h"
#include "dates/DateRuleStore.h"
#include "dates/OriginalDate.h"
#include "extras/ExtraEdits.h"
#include "geo/PlacedPosition.h"

#include <memory>
#include <vector>

namespace tagmoor {

// The edit state that the editor writes and a run reads: which form fields were edited,
// the date rules of the main form and of the preset panel's form, the photo on display and
// its own dates. One object for the application, owned by the shell and handed to the editor
// and (as a copy) to the run.
struct EditorState {
    FieldEditedFlags fieldEditedFlags;
    DateStores dateStores;
    OriginalDate originalDates;
    int currentImageIndex = 0;
    // The date panel's "Carry into days, months and years": shifts of every date rule carry.
    bool carryShifts = false;
    // The edits of the Keywords & More tab: keywords added and removed, rating, label, the
    // IPTC texts and the people shown.
    ExtraEdits extras;
    // Values that differ from photo to photo, laid over the form's in order (the rows of
    // imported metadata tables).
    std::vector<std::shared_ptr<const PhotoValues>> photoValues;
    // The positions the geotag panel put on photos, by path: each photo's own GPS edits.
    PlacedPositions placedPositions;
    // The zone of the run's dates as typed ("Europe/Lisbon", "+05:45"; empty: none), and the
    // date panel's "Shift to the local time of the place", which moves each photo's dates from
    // that zone (the camera's; empty: the system's) to the zone of the photo's position.
    QString datesZone;
    bool shiftToLocalTime = false;

    // Whether the per-photo values above write anything.
    bool writesPhotoValues() const {
        return !photoValues.empty() || !placedPositions.isEmpty() || shiftToLocalTime ||
               !datesZone.trimmed().isEmpty();
    }

    DateRuleStore& editorDates() { return dateStores.editorDates; }
    const DateRuleStore& editorDates() const { return dateStores.editorDates; }
};

} // namespace tagmoor
