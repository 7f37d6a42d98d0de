#pragma once

#include "batch/FieldEditedFlags.h"
#include "dates/OriginalFinalDate.h"
#include "model/CGImageProperties.h"
#include "presets/ActualPreset.h"

namespace tagmoor {

class MetadataForm;

// What a run receives after a preset was applied to the main form: the form read back, the
// positions counted as edited and the date rules. A preset edits exactly the fields it holds
// a value for (a text that shows, a number other than zero, a popup off its blank row) and
// the date fields whose rule was touched. The form and the command line both go through
// this, so a preset writes the same values from either.
struct PresetRunEdits {
    CGImageProperties editedProperties;
    FieldEditedFlags fieldEditedFlags;
    OriginalFinalDate editorDates;
};

PresetRunEdits presetRunEdits(const ActualPreset& preset);

// The values a preset keeps of a form: its snapshot without the controls left empty or on
// their blank row, so that applying the preset edits only what the form held. (An empty form
// reads back as zeros and empty texts, which a preset would otherwise take for values.)
CGImageProperties presetValuesOf(const MetadataForm& form);

} // namespace tagmoor
