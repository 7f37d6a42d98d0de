#pragma once

#include "batch/FieldEditedFlags.h"
#include "dates/DateRuleStore.h"
#include "dates/OriginalDate.h"

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

    DateRuleStore& editorDates() { return dateStores.editorDates; }
    const DateRuleStore& editorDates() const { return dateStores.editorDates; }
};

} // namespace tagmoor
