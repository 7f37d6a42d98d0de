#pragma once

#include "batch/FieldEditedFlags.h"
#include "batch/PhotoValues.h"
#include "dates/DateRuleStore.h"
#include "dates/OriginalDate.h"
#include "extras/ExtraEdits.h"

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

    DateRuleStore& editorDates() { return dateStores.editorDates; }
    const DateRuleStore& editorDates() const { return dateStores.editorDates; }
};

} // namespace tagmoor
